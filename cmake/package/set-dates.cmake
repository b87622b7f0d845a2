# The same sources make the same packages: with SOURCE_DATE_EPOCH, the seconds since 1970 at which they
# were last changed, every file and folder has that date.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
    if(NOT "$ENV{SOURCE_DATE_EPOCH}" MATCHES "^[0-9]+$")
        message(FATAL_ERROR "SOURCE_DATE_EPOCH is '$ENV{SOURCE_DATE_EPOCH}': it must be a number of seconds")
    endif()
    execute_process(
        COMMAND find ${CPACK_TEMPORARY_DIRECTORY} -exec touch -h -d "@$ENV{SOURCE_DATE_EPOCH}" {} +
        COMMAND_ERROR_IS_FATAL ANY)
endif()
