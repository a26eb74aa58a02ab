# Cross build for 32-bit ARM Linux: ARMv7-A with NEON and hard float, the
# instruction set of Android's armeabi-v7a, with Debian's cross compiler
# (g++-arm-linux-gnueabihf). Test programs run under qemu-arm (qemu-user)
# against the cross sysroot.
#   cmake -S . -B build-armhf -DCMAKE_TOOLCHAIN_FILE=cmake/toolchains/armhf.cmake
set(CMAKE_SYSTEM_PROCESSOR armv7-a)
set(MOLO_CROSS_TRIPLE arm-linux-gnueabihf)
set(MOLO_CROSS_QEMU qemu-arm)
set(CMAKE_C_FLAGS_INIT "-march=armv7-a -mfpu=neon -mfloat-abi=hard")
set(CMAKE_CXX_FLAGS_INIT "-march=armv7-a -mfpu=neon -mfloat-abi=hard")
include(${CMAKE_CURRENT_LIST_DIR}/linux_cross.cmake)
