# Cross build for 64-bit ARM Linux (ARMv8-A, NEON always present; Android's
# arm64-v8a) with Debian's cross compiler (g++-aarch64-linux-gnu). Test
# programs run under qemu-aarch64 (qemu-user) against the cross sysroot.
#   cmake -S . -B build-aarch64 -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/aarch64.cmake
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(MOLO_CROSS_TRIPLE aarch64-linux-gnu)
set(MOLO_CROSS_QEMU qemu-aarch64)
include(${CMAKE_CURRENT_LIST_DIR}/linux_cross.cmake)
