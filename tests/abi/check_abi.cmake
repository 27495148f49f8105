# Compares the binary interface of the library with the one promised in BASELINE. With UPDATE, writes
# the baseline anew instead. Wants LIBRARY, SOURCE_DIR, BUILD_DIR and SCRATCH_DIR.
function(run)
    execute_process(COMMAND ${ARGN}
        OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
    set(output "${output}" PARENT_SCOPE)
    set(result ${result} PARENT_SCOPE)
endfunction()

set(interface ${SCRATCH_DIR}/libqeldevices.abi)
file(MAKE_DIRECTORY ${SCRATCH_DIR})
file(REMOVE ${interface})
run(abidw --headers-dir ${SOURCE_DIR}/src --drop-private-types --exported-interfaces-only --load-all-types
    --drop-undefined-syms --no-corpus-path --no-comp-dir-path --no-show-locs --no-parameter-names
    --no-write-default-sizes --suppressions ${CMAKE_CURRENT_LIST_DIR}/foreign_types.ini
    --out-file ${interface} ${LIBRARY})
if(NOT result EQUAL 0)
    message(FATAL_ERROR "abidw ${LIBRARY} (${result}):\n${output}")
endif()
file(READ ${interface} content)
string(REPLACE "${BUILD_DIR}/" "" content "${content}")
string(REPLACE "${SOURCE_DIR}/" "" content "${content}")
# Without its types the interface has no sizes to compare.
if(NOT content MATCHES "class-decl name='Device' size-in-bits")
    message(FATAL_ERROR "${LIBRARY} has no debugging information")
endif()
file(WRITE ${interface} "${content}")

if(UPDATE)
    file(COPY_FILE ${interface} ${BASELINE})
    return()
endif()
run(abidiff --non-reachable-types ${BASELINE} ${interface})
if(NOT result EQUAL 0)
    message(FATAL_ERROR "the binary interface has changed (${result}):\n${output}\n"
        "A driver or an application built before must go on working; docs/compatibility.md says what"
        " may change. Where the change is one of those, write the baseline anew:"
        " cmake --build ${BUILD_DIR} --target update_abi_baseline")
endif()
