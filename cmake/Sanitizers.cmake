if(WAP_SANITIZE STREQUAL "address")
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
elseif(WAP_SANITIZE STREQUAL "thread")
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
elseif(WAP_SANITIZE)
    message(FATAL_ERROR "WAP_SANITIZE is '${WAP_SANITIZE}': use address, thread or nothing")
endif()

# For the bridge and its tests alone: a process of the gateway that is killed leaves no profile.
if(WAP_COVERAGE)
    # Atomic: what threads count together would get lost, and what was counted once with it.
    set(WAP_COVERAGE_COMPILE_OPTIONS
        -fprofile-instr-generate -fprofile-update=atomic -fcoverage-mapping)
    set(WAP_COVERAGE_LINK_OPTIONS -fprofile-instr-generate)
endif()

if(WAP_FUZZ)
    # The fuzzer sees every branch of our code.
    add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(WAP_SANITIZE STREQUAL "address" AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # The sanitizer is a library of its own, as it is with g++, so that the hooks of the tests around
    # malloc and its kin get into our code alone.
    execute_process(
        COMMAND ${CMAKE_CXX_COMPILER}
            -print-file-name=libclang_rt.asan-${CMAKE_SYSTEM_PROCESSOR}.so
        OUTPUT_VARIABLE sAsanLibrary OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT IS_ABSOLUTE "${sAsanLibrary}")
        message(FATAL_ERROR "AddressSanitizer of clang is missing (libclang-rt-dev)")
    endif()
    get_filename_component(sAsanFolder "${sAsanLibrary}" DIRECTORY)
    add_link_options(-shared-libasan "-Wl,-rpath,${sAsanFolder}")
endif()
