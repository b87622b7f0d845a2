# What `cpack --config BUILD/CPackConfig.cmake` makes of what is installed: a .tar.gz that may be
# unpacked anywhere, and a .deb, both in BUILD/packages.

install(FILES ${PROJECT_SOURCE_DIR}/LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT library)
if(NOT PROJECT_SOURCE_DIR STREQUAL CMAKE_SOURCE_DIR)
    return() # A project that takes this one in makes packages of its own.
endif()

set(CPACK_PACKAGE_NAME ${WAP_PACKAGE_NAME})
set(CPACK_PACKAGE_VENDOR "vt_wap_jni developers")
set(CPACK_PACKAGE_CONTACT "vt_wap_jni developers <developers@vt-wap-jni.invalid>")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/package/set-dates.cmake)
set(CPACK_PROJECT_CONFIG_FILE ${PROJECT_SOURCE_DIR}/cmake/package/each-package.cmake)
set(CPACK_GENERATOR TGZ)
set(CPACK_SOURCE_GENERATOR "")

# The name that Debian has for the processor and the way to call functions.
set(sArchitecture ${CMAKE_SYSTEM_PROCESSOR})
set(acDebian "arm-linux-gnueabihf=armhf" "arm-linux-gnueabi=armel" "aarch64-linux-gnu=arm64"
    "x86_64-linux-gnu=amd64" "i386-linux-gnu=i386")
foreach(sPair ${acDebian})
    if(CMAKE_LIBRARY_ARCHITECTURE AND sPair MATCHES "^${CMAKE_LIBRARY_ARCHITECTURE}=(.*)")
        set(sArchitecture ${CMAKE_MATCH_1})
        set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${CMAKE_MATCH_1})
        list(APPEND CPACK_GENERATOR DEB)
    endif()
endforeach()
set(CPACK_PACKAGE_FILE_NAME ${WAP_PACKAGE_NAME}-${PROJECT_VERSION}-linux-${sArchitecture})
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

if(WAP_PACKAGE STREQUAL "sdk")
    set(CPACK_DEBIAN_PACKAGE_SECTION devel)
    set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "device services of a home gateway for Java, on a PC")
    set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
        "The native library that stands behind the Java device services of a home
gateway, and what one needs to develop bundles and firmware with it: the
gateway's platform library for a PC, a simulated gateway with the program
that controls it, a console, the service classes with their documentation,
C headers, and the files that CMake and pkg-config look for.")
    # Which versions of the C, C++ and other libraries, their packages know.
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
    # The programs in Java and the jars that they name; a program in C needs none of it.
    set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "default-jre-headless | java11-runtime-headless, \
libfelix-framework-java, libgoogle-gson-java, libjline3-java, libpicocli-java")
    set(CPACK_DEBIAN_PACKAGE_SUGGESTS "default-jdk-headless, bnd")
    # Both have the library in one place.
    set(CPACK_DEBIAN_PACKAGE_CONFLICTS vt-wap-jni)
    set(CPACK_DEBIAN_PACKAGE_REPLACES vt-wap-jni)
else()
    set(CPACK_DEBIAN_PACKAGE_SECTION libs)
    set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "device services of a home gateway for Java, the library")
    set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
        "The native library that stands behind the Java device services of a home
gateway, and nothing else. For gateways and test boards whose system is
Debian: the platform library that it needs, libvt_ssp_basic.so, comes with
the gateway's firmware, and the service classes with its bundles.")
    # The packages of another machine's libraries are not here to be asked. tests/install compares
    # these with what the file says.
    set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6 (>= 2.34), libjson-c5 (>= 0.15)")
    set(CPACK_DEBIAN_PACKAGE_CONFLICTS vt-wap-jni-sdk)
    set(CPACK_DEBIAN_PACKAGE_REPLACES vt-wap-jni-sdk)
    set(CPACK_COMPONENTS_ALL library)
    set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
    set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
    set(CPACK_DEB_COMPONENT_INSTALL ON)
endif()

# What Debian wants of a package: loading finds a new library at once, and documents of its own.
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/package/triggers)
set(sJavadocCopyright "")
if(WAP_PACKAGE STREQUAL "sdk")
    # Only the SDK has the Javadoc, with what the JDK's makers and others wrote.
    set(sFile ${PROJECT_SOURCE_DIR}/cmake/package/copyright-javadoc)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${sFile})
    file(READ ${sFile} sJavadocCopyright)
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/package/copyright.in
    ${CMAKE_BINARY_DIR}/package/copyright @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/cmake/package/changelog.in
    ${CMAKE_BINARY_DIR}/package/changelog @ONLY)
execute_process(COMMAND gzip -9nfk ${CMAKE_BINARY_DIR}/package/changelog COMMAND_ERROR_IS_FATAL ANY)
install(FILES ${CMAKE_BINARY_DIR}/package/copyright ${CMAKE_BINARY_DIR}/package/changelog.gz
    DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT library)
include(CPack)
