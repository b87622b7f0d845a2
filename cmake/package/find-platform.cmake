
# This tree was made for a firmware, which has a platform library of its own.
if(NOT TARGET vt_wap::vt_ssp_basic)
    find_library(vt_wap_jni_PLATFORM_LIBRARY vt_ssp_basic HINTS "${vt_wap_jni_LIBRARY_DIR}")
    if(NOT vt_wap_jni_PLATFORM_LIBRARY)
        set(vt_wap_jni_FOUND FALSE)
        set(vt_wap_jni_NOT_FOUND_MESSAGE
            "There is no libvt_ssp_basic.so, the platform library, in the folders for libraries: name it with -Dvt_wap_jni_PLATFORM_LIBRARY=FILE")
        return()
    endif()
    add_library(vt_wap::vt_ssp_basic SHARED IMPORTED)
    set_target_properties(vt_wap::vt_ssp_basic PROPERTIES
        IMPORTED_LOCATION "${vt_wap_jni_PLATFORM_LIBRARY}"
        IMPORTED_SONAME libvt_ssp_basic.so
        INTERFACE_LINK_LIBRARIES vt_wap::platform_headers)
endif()
