add_compile_options(
    -Wall -Wextra -Werror
    $<$<COMPILE_LANGUAGE:CXX>:-Wshadow>
    $<$<COMPILE_LANGUAGE:CXX>:-Wconversion>
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=
)
