# What the programs in Java and the bundles are built with.

# wap_system_jars(VARIABLE PACKAGES NAME... JARS NAME...) puts the paths of Debian's jars into the
# variable, with colons between them; the packages are named when one is missing.
function(wap_system_jars sVariable)
    cmake_parse_arguments(ARG "" "" "PACKAGES;JARS" ${ARGN})
    set(acPaths "")
    foreach(sJar ${ARG_JARS})
        find_file(WAP_JAR_${sJar} ${sJar}.jar PATHS /usr/share/java
            NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
        if(NOT WAP_JAR_${sJar})
            list(JOIN ARG_PACKAGES " " sPackages)
            message(FATAL_ERROR
                "No ${sJar}.jar in /usr/share/java. On Debian: apt-get install ${sPackages}")
        endif()
        list(APPEND acPaths ${WAP_JAR_${sJar}})
    endforeach()
    list(JOIN acPaths ":" sPaths)
    set(${sVariable} ${sPaths} PARENT_SCOPE)
endfunction()

# wap_java_program(NAME MAIN CLASS LIBRARIES PATHS [CLASS_PATH JAR...] [OPTIONS TEXT...]) compiles
# what is in src/ beside the caller, and what the programs share, to NAME.jar and makes the script
# NAME that starts it. LIBRARIES are jars of the system; CLASS_PATH names jars of this project that
# the program has at run time, and OPTIONS are further options of the virtual machine, in which the
# script knows its jars' folder as $sJars and its tree as $sRoot.
function(wap_java_program sName)
    cmake_parse_arguments(ARG "" "MAIN;LIBRARIES" "CLASS_PATH;OPTIONS" ${ARGN})
    file(GLOB_RECURSE acSources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/src/*.java
        ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/shared/src/*.java)
    set(sJar ${WAP_JAVA_DIR}/${sName}.jar)
    set(sClasses ${CMAKE_CURRENT_BINARY_DIR}/classes)
    add_custom_command(
        OUTPUT ${sJar}
        COMMAND ${CMAKE_COMMAND} -E rm -rf ${sClasses}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${sClasses}
        COMMAND ${WAP_JAVAC} --release 11 -encoding UTF-8 -g -Xlint:all,-options,-processing
                -Werror -proc:none -cp ${ARG_LIBRARIES} -d ${sClasses} ${acSources}
        COMMAND ${WAP_JAR} --create --file ${sJar} --main-class ${ARG_MAIN} -C ${sClasses} .
        DEPENDS ${acSources}
        COMMENT "Compiling ${sName}"
        VERBATIM
    )
    add_custom_target(java_${sName} ALL DEPENDS ${sJar} java_api)

    # One script for the build tree, one for the installed tree: they differ in the folders' names.
    set(WAP_PROGRAM ${sName})
    set(sClassPath "$sJars/${sName}.jar")
    foreach(sOurs ${ARG_CLASS_PATH})
        string(APPEND sClassPath ":$sJars/${sOurs}")
    endforeach()
    list(APPEND ARG_OPTIONS "-cp \"${sClassPath}:${ARG_LIBRARIES}\"" ${ARG_MAIN})
    list(JOIN ARG_OPTIONS " \\\n    " WAP_PROGRAM_OPTIONS)
    set(WAP_PROGRAM_JARS java)
    set(WAP_PROGRAM_LIB lib)
    set(sTemplate ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/program.sh.in)
    configure_file(${sTemplate} ${CMAKE_BINARY_DIR}/bin/${sName} @ONLY
        FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
                         WORLD_READ WORLD_EXECUTE)
    set(WAP_PROGRAM_JARS ${CMAKE_INSTALL_DATADIR}/java)
    set(WAP_PROGRAM_LIB ${CMAKE_INSTALL_LIBDIR})
    configure_file(${sTemplate} ${CMAKE_CURRENT_BINARY_DIR}/installed/${sName} @ONLY)

    install(FILES ${sJar} DESTINATION ${CMAKE_INSTALL_DATADIR}/java COMPONENT java)
    install(PROGRAMS ${CMAKE_CURRENT_BINARY_DIR}/installed/${sName}
        DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT java)
endfunction()
