# Cross build with the SDK of a firmware that Buildroot makes, with uClibc: a file to copy and change.
# docs/porting.md shows it at work. It wants one thing, which the environment may name as well:
#
#   WAP_SDK        the folder of the SDK (what `make sdk` packs, after its relocate-sdk.sh has run)
#
# and takes two more, for an SDK whose folders have other names:
#
#   WAP_SDK_TUPLE  what its compiler's name begins with, when that is not in bin/*-linux-uclibc*-gcc
#   WAP_SYSROOT    the target's headers and libraries, when the compiler doesn't know where they are
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)

foreach(sName WAP_SDK WAP_SDK_TUPLE WAP_SYSROOT)
    if(NOT ${sName})
        set(${sName} "$ENV{${sName}}")
    endif()
    # A later run, which the build begins by itself, may have another environment.
    if(${sName})
        set(${sName} "${${sName}}" CACHE STRING "See the toolchain file")
    endif()
endforeach()
# The compiler checks configure projects of their own, which must see the same SDK.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES WAP_SDK WAP_SDK_TUPLE WAP_SYSROOT)

if(NOT WAP_SDK OR NOT IS_DIRECTORY "${WAP_SDK}/bin")
    message(FATAL_ERROR "There is no SDK in '${WAP_SDK}': name its folder with -DWAP_SDK=FOLDER")
endif()
if(NOT WAP_SDK_TUPLE)
    file(GLOB acCompilers RELATIVE "${WAP_SDK}/bin" "${WAP_SDK}/bin/*-linux-uclibc*-gcc")
    list(LENGTH acCompilers iCompilers)
    if(NOT iCompilers EQUAL 1)
        message(FATAL_ERROR "${WAP_SDK}/bin has ${iCompilers} compilers *-linux-uclibc*-gcc: "
            "name the one by what stands before -gcc, as -DWAP_SDK_TUPLE=arm-linux")
    endif()
    string(REGEX REPLACE "-gcc$" "" WAP_SDK_TUPLE "${acCompilers}")
endif()
set(CMAKE_C_COMPILER "${WAP_SDK}/bin/${WAP_SDK_TUPLE}-gcc")
set(CMAKE_CXX_COMPILER "${WAP_SDK}/bin/${WAP_SDK_TUPLE}-g++")

if(NOT WAP_SYSROOT)
    execute_process(COMMAND "${CMAKE_C_COMPILER}" -print-sysroot
        OUTPUT_VARIABLE WAP_SYSROOT OUTPUT_STRIP_TRAILING_WHITESPACE)
endif()
if(NOT WAP_SYSROOT OR NOT EXISTS "${WAP_SYSROOT}/usr/include")
    message(FATAL_ERROR "${CMAKE_C_COMPILER} names '${WAP_SYSROOT}' for its headers and libraries, and "
        "there is no usr/include: name the folder with -DWAP_SYSROOT=FOLDER")
endif()
set(CMAKE_SYSROOT "${WAP_SYSROOT}")

# Libraries and headers come from the target, tools (a Java compiler among them) from here.
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

set(ENV{PKG_CONFIG_SYSROOT_DIR} "${WAP_SYSROOT}")
set(ENV{PKG_CONFIG_LIBDIR} "${WAP_SYSROOT}/usr/lib/pkgconfig:${WAP_SYSROOT}/usr/share/pkgconfig")
set(ENV{PKG_CONFIG_PATH} "")
