# Writes OUTPUT, a header with the first eight digits of the commit that SOURCE_DIR stands at, or with
# zeros where SOURCE_DIR is not the top of a git work tree. Untouched when nothing has changed.
set(identifier 00000000)
execute_process(
    COMMAND git -c safe.directory=* rev-parse --show-toplevel HEAD
    WORKING_DIRECTORY ${SOURCE_DIR}
    OUTPUT_VARIABLE answer
    ERROR_QUIET
    RESULT_VARIABLE result)
file(REAL_PATH ${SOURCE_DIR} source)
if(result EQUAL 0 AND answer MATCHES "^([^\n]+)\n([0-9a-f]+)\n$")
    set(commit ${CMAKE_MATCH_2})
    file(REAL_PATH "${CMAKE_MATCH_1}" top)
    if(top STREQUAL source)
        string(SUBSTRING ${commit} 0 8 identifier)
    endif()
endif()
file(CONFIGURE OUTPUT ${OUTPUT} CONTENT "#define QELDEVICES_BUILD_IDENTIFIER \"${identifier}\"\n")
