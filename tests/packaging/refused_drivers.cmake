# Configures projects with faulty drivers; each must be refused with a message that names the fault.
# Wants SOURCE_DIR, the top of the sources, and SCRATCH_DIR, a folder to work in.
set(failures 0)

# refused(ROW ARGUMENTS PATTERN): qel_add_driver(ROW ARGUMENTS) ends in a message like PATTERN.
function(refused row arguments pattern)
    set(directory ${SCRATCH_DIR}/${row})
    file(WRITE ${directory}/CMakeLists.txt
"cmake_minimum_required(VERSION 3.22)
project(${row} LANGUAGES NONE)
include(${SOURCE_DIR}/cmake/QelDevicesAddDriver.cmake)
qel_add_driver(${row} ${arguments})
")
    if(NOT "${ARGN}" STREQUAL "")
        file(WRITE ${directory}/plugin.json "${ARGN}")
    endif()
    execute_process(
        COMMAND ${CMAKE_COMMAND} -S ${directory} -B ${directory}/build -G Ninja
        OUTPUT_QUIET ERROR_VARIABLE message RESULT_VARIABLE result)
    # Messages are broken into lines.
    string(REGEX REPLACE "[ \n]+" " " message "${message}")
    if(result EQUAL 0 OR NOT message MATCHES "qel_add_driver\\(${row}\\): ${pattern}")
        message("${row}: expected '${pattern}', got (${result}): ${message}")
        math(EXPR failures "${failures} + 1")
        set(failures ${failures} PARENT_SCOPE)
    endif()
endfunction()

file(REMOVE_RECURSE ${SCRATCH_DIR})
set(rest [["url": "u", "resource-id": "r", "version": "1"]])
set(metadata "SOURCES x.cpp METADATA plugin.json")

refused(no_metadata "SOURCES x.cpp" "METADATA is missing")
refused(no_file "${metadata}" "there is no metadata file '[^']*/no_file/plugin.json'")
refused(folder "SOURCES x.cpp METADATA ." "there is no metadata file '[^']*/folder'")
refused(garbage "${metadata}" "'[^']*/plugin.json' is not JSON: .*Line 1, Column 1" "garbage")
refused(cut_off "${metadata}" "'[^']*/plugin.json' is not JSON: " "{${rest}")
refused(array "${metadata}" "'[^']*/plugin.json' must hold one JSON object" "[\"manufacturer\"]")
refused(text "${metadata}" "'[^']*/plugin.json' must hold one JSON object" "\"manufacturer\"")
refused(missing_key "${metadata}" "the key \"manufacturer\" is missing in '[^']*/plugin.json'"
    "{${rest}}")
refused(other_case "${metadata}" "the key \"manufacturer\" is missing in '[^']*/plugin.json'"
    "{\"Manufacturer\": \"m\", ${rest}}")
refused(no_string "${metadata}" "the key \"manufacturer\" in '[^']*/plugin.json' must hold a string"
    "{\"manufacturer\": null, ${rest}}")
refused(number "${metadata}" "the key \"version\" in '[^']*/plugin.json' must hold a string"
    "{\"manufacturer\": \"m\", \"url\": \"u\", \"resource-id\": \"r\", \"version\": 1.0}")
refused(catalogue_name "${metadata} TRANSLATIONS catalogue_de.ts"
    "the catalogue 'catalogue_de.ts' would not be found at run time"
    "{\"manufacturer\": \"m\\u00fcller; [x] \\\\\", ${rest}}")
# catalogue(FILE ID TEXT...): a catalogue with these texts.
function(catalogue file)
    set(messages "")
    while(ARGN)
        list(POP_FRONT ARGN id text)
        string(APPEND messages "<message id=\"${id}\">\n<source></source>\n"
            "<translation>${text}</translation>\n</message>\n")
    endwhile()
    file(WRITE ${SCRATCH_DIR}/${file} "<TS version=\"2.1\">\n<context>\n${messages}</context></TS>\n")
endfunction()

set(catalogues "${metadata} TRANSLATIONS plugin_en.ts plugin_de.ts plugin.ts")
foreach(row IN ITEMS lacking_text empty_text)
    catalogue(${row}/plugin_en.ts r-a "One [1]" r-b "Two" r-c "Three")
    catalogue(${row}/plugin.ts r-a "One" r-b "Two" r-c "Three")
endforeach()
catalogue(lacking_text/plugin_de.ts r-a "Eins")
catalogue(empty_text/plugin_de.ts r-a "Eins" r-b " " r-c "Drei")
refused(lacking_text "${catalogues}"
    ".*these texts are missing: 'r-b' in '[^']*/plugin_de.ts' 'r-c' in '[^']*/plugin_de.ts' "
    "{\"manufacturer\": \"m\", ${rest}}")
refused(empty_text "${catalogues}" ".*these texts are missing: 'r-b' in '[^']*/plugin_de.ts' [^']*$"
    "{\"manufacturer\": \"m\", ${rest}}")
refused(misspelt "SOURCE x.cpp ${metadata}" "cannot make sense of 'SOURCE;x.cpp'")

if(failures GREATER 0)
    message(FATAL_ERROR "${failures} drivers were not refused as they should be")
endif()
