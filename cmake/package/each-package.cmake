# cpack reads this before each of its packages. An archive is one folder; what Debian unpacks begins with
# its own /usr.
if(CPACK_GENERATOR STREQUAL "TGZ")
    set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
else()
    set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY OFF)
endif()
