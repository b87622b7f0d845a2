# What others build with: headers, the package that find_package finds, and those of pkg-config. All
# paths in them count from where they are, so a tree that was moved works as well.
include(CMakePackageConfigHelpers)

if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
    message(FATAL_ERROR "CMAKE_INSTALL_LIBDIR and CMAKE_INSTALL_INCLUDEDIR must be folders below the prefix")
endif()
set(sConfigDir ${CMAKE_INSTALL_LIBDIR}/cmake/vt_wap_jni)
set(sPkgConfigDir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
set(WAP_INSTALLED_API_JAR ${CMAKE_INSTALL_DATADIR}/java/wap-api.jar)

install(TARGETS vt_platform_headers EXPORT vt_wap_jni-targets)
set(acHeaders ${PROJECT_SOURCE_DIR}/platform/include/vt_ssp_basic.h)
if(WAP_HOST)
    list(APPEND acHeaders ${PROJECT_SOURCE_DIR}/platform/include/vt_ssp_host.h)
endif()
install(FILES ${acHeaders} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(EXPORT vt_wap_jni-targets FILE vt_wap_jniTargets.cmake NAMESPACE vt_wap::
    DESTINATION ${sConfigDir} COMPONENT development)

set(WAP_FIND_PLATFORM "")
set(WAP_PC_REQUIRES "")
if(WAP_HOST)
    set(WAP_PC_REQUIRES "Requires: vt_ssp_basic\n")
else()
    file(READ ${PROJECT_SOURCE_DIR}/cmake/package/find-platform.cmake WAP_FIND_PLATFORM)
endif()
set(sGenerated ${CMAKE_BINARY_DIR}/package)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/package/vt_wap_jniConfig.cmake.in
    ${sGenerated}/vt_wap_jniConfig.cmake INSTALL_DESTINATION ${sConfigDir}
    PATH_VARS WAP_INSTALLED_API_JAR CMAKE_INSTALL_LIBDIR)
write_basic_package_version_file(${sGenerated}/vt_wap_jniConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
install(FILES ${sGenerated}/vt_wap_jniConfig.cmake ${sGenerated}/vt_wap_jniConfigVersion.cmake
    DESTINATION ${sConfigDir} COMPONENT development)

file(RELATIVE_PATH WAP_PC_TO_PREFIX /${sPkgConfigDir} /)
string(REGEX REPLACE "/$" "" WAP_PC_TO_PREFIX "${WAP_PC_TO_PREFIX}")
set(acPkgConfigs vt_wap_jni)
if(WAP_HOST)
    list(APPEND acPkgConfigs vt_ssp_basic)
endif()
foreach(sName ${acPkgConfigs})
    configure_file(${PROJECT_SOURCE_DIR}/cmake/package/${sName}.pc.in ${sGenerated}/${sName}.pc @ONLY)
    install(FILES ${sGenerated}/${sName}.pc DESTINATION ${sPkgConfigDir} COMPONENT development)
endforeach()
