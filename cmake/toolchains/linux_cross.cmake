# What the ARM toolchain files share: Debian's cross compiler named by
# MOLO_CROSS_TRIPLE, its sysroot under /usr/<triple> for libraries, headers
# and packages (programs come from the host), and the qemu-user emulator
# MOLO_CROSS_QEMU that runs the test programs against that sysroot.
set(CMAKE_SYSTEM_NAME Linux)
set(MOLO_CROSS_SYSROOT /usr/${MOLO_CROSS_TRIPLE})

set(CMAKE_C_COMPILER ${MOLO_CROSS_TRIPLE}-gcc)
set(CMAKE_CXX_COMPILER ${MOLO_CROSS_TRIPLE}-g++)

set(CMAKE_FIND_ROOT_PATH ${MOLO_CROSS_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(CMAKE_CROSSCOMPILING_EMULATOR ${MOLO_CROSS_QEMU} -L ${MOLO_CROSS_SYSROOT})
