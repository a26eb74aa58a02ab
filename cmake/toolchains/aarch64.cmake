# Cross build for 64-bit ARM Linux (ARMv8-A, NEON always present; Android's
# arm64-v8a) with Debian's cross compiler (g++-aarch64-linux-gnu). Test
# programs run under qemu-aarch64 (qemu-user) against the cross sysroot.
#   cmake -S . -B build-aarch64 -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/aarch64.cmake
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)

set(MOLO_CROSS_TRIPLE aarch64-linux-gnu)
set(MOLO_CROSS_SYSROOT /usr/${MOLO_CROSS_TRIPLE})

set(CMAKE_C_COMPILER ${MOLO_CROSS_TRIPLE}-gcc)
set(CMAKE_CXX_COMPILER ${MOLO_CROSS_TRIPLE}-g++)

set(CMAKE_FIND_ROOT_PATH ${MOLO_CROSS_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L ${MOLO_CROSS_SYSROOT})
