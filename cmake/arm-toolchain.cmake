# Cross build for 32-bit ARM Linux (hard float) against the sysroot in WAP_SYSROOT, which
# cmake/make-sysroot makes. A port to a real gateway starts from a copy of this file: see
# docs/porting.md.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)

if(NOT DEFINED WAP_SYSROOT)
    set(WAP_SYSROOT "$ENV{WAP_SYSROOT}")
endif()
if(NOT WAP_SYSROOT)
    get_filename_component(WAP_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/../build/sysroot-armhf" ABSOLUTE)
endif()
if(NOT EXISTS "${WAP_SYSROOT}/usr/include")
    message(FATAL_ERROR "There is no sysroot in '${WAP_SYSROOT}': make it with cmake/make-sysroot")
endif()
# The compiler checks configure projects of their own, which must see the same sysroot.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES WAP_SYSROOT)

set(CMAKE_SYSROOT "${WAP_SYSROOT}")
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)
set(CMAKE_CROSSCOMPILING_EMULATOR "qemu-arm-static;-L;${WAP_SYSROOT}")

# Libraries and headers come from the target, tools (a Java compiler among them) from here.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(ENV{PKG_CONFIG_SYSROOT_DIR} "${WAP_SYSROOT}")
set(ENV{PKG_CONFIG_LIBDIR}
    "${WAP_SYSROOT}/usr/lib/arm-linux-gnueabihf/pkgconfig:${WAP_SYSROOT}/usr/share/pkgconfig")
set(ENV{PKG_CONFIG_PATH} "")
