# cpack reads this before each of its packages. An archive is one folder; what Debian unpacks begins with
# its own /usr.
if(CPACK_GENERATOR STREQUAL "TGZ")
    set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
else()
    set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY OFF)
endif()
# Which packages the programs need is found out by these two; without, a .deb would name none.
if(CPACK_GENERATOR STREQUAL "DEB" AND CPACK_DEBIAN_PACKAGE_SHLIBDEPS)
    find_program(WAP_SHLIBDEPS dpkg-shlibdeps)
    find_program(WAP_FILE file)
    if(NOT WAP_SHLIBDEPS OR NOT WAP_FILE)
        message(FATAL_ERROR "A .deb needs dpkg-shlibdeps and file: apt-get install dpkg-dev file; "
            "or make the .tar.gz alone, with cpack -G TGZ")
    endif()
endif()
