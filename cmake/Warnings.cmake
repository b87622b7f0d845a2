add_compile_options(
    -Wall -Wextra -Werror
    $<$<COMPILE_LANGUAGE:CXX>:-Wshadow>
    $<$<COMPILE_LANGUAGE:CXX>:-Wconversion>
    # clang means changes of the sign, too, which g++ leaves to another option in C++.
    $<$<COMPILE_LANG_AND_ID:CXX,Clang>:-Wno-sign-conversion>
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=
)
