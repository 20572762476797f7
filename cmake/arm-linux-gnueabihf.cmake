# Cross build for the meter's 32-bit ARM board with Debian's armhf toolchain and libraries; the
# tests run under qemu-arm.
#
# Where the ARM programs find their libraries under qemu-arm:
# - `-L /usr/arm-linux-gnueabihf` makes the cross toolchain's tree the guest's root: the loader
#   /lib/ld-linux-armhf.so.3 comes from there; a path missing there falls back to the host's.
# - The guest's LD_LIBRARY_PATH points at the toolchain's own libc, libm, libstdc++ and libgcc_s
#   (the same files the programs were linked against, and the loader's own glibc build), instead
#   of the libc6:armhf copies that the host's ld.so.cache would offer first.
# - Jansson exists only as the multiarch package libjansson-dev:armhf, in
#   /usr/lib/arm-linux-gnueabihf, which the loader searches by default (through the fallback).
# `-E` sets the variable for the guest only; qemu-arm itself runs with the host's environment.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
set(ZT4_ARM_SYSROOT /usr/arm-linux-gnueabihf)
set(CMAKE_CROSSCOMPILING_EMULATOR
  qemu-arm -L ${ZT4_ARM_SYSROOT} -E LD_LIBRARY_PATH=${ZT4_ARM_SYSROOT}/lib)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
