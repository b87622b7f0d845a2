# Writes a header with the list of the native methods that javac's headers declare, as a macro:
#   cmake -DsHeaders=FOLDER -DsOut=FILE -P list-natives.cmake
# WAP_EVERY_NATIVE(X) is X(symbol) for each of them, in the order of their names.

file(GLOB asHeaders "${sHeaders}/*.h")
list(SORT asHeaders)
set(sIncludes "")
set(sList "")
set(uiCount 0)
foreach(sHeader ${asHeaders})
    file(READ "${sHeader}" sText)
    string(REGEX MATCHALL "JNICALL Java_[A-Za-z0-9_]+" asNatives "${sText}")
    if(NOT asNatives)
        continue()
    endif()
    cmake_path(GET sHeader FILENAME sName)
    string(APPEND sIncludes "#include <${sName}>\n")
    foreach(sNative ${asNatives})
        string(REPLACE "JNICALL " "" sNative "${sNative}")
        string(APPEND sList " \\\n    X(${sNative})")
        math(EXPR uiCount "${uiCount} + 1")
    endforeach()
endforeach()
if(uiCount EQUAL 0)
    message(FATAL_ERROR "no native method is declared in ${sHeaders}")
endif()

file(WRITE "${sOut}" "// Made from the headers of the service classes.
#ifndef WAP_TESTS_NATIVES_H
#define WAP_TESTS_NATIVES_H

${sIncludes}
#define WAP_NATIVES ${uiCount}
#define WAP_EVERY_NATIVE(X)${sList}

#endif
")
