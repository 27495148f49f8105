# Writes a new driver, builds it against the installed package and holds it to the rules.
# Wants QELCTL, CHECK (a program that checks "--check FILE"), BUILD_DIR, SCRATCH_DIR COMPILER and PYTHON.
file(REMOVE_RECURSE ${SCRATCH_DIR})
function(run)
    execute_process(COMMAND ${ARGN}
        OUTPUT_VARIABLE output ERROR_VARIABLE output RESULT_VARIABLE result)
    if(NOT result EQUAL 0)
        string(REPLACE ";" " " command "${ARGN}")
        message(FATAL_ERROR "${command} (${result}):\n${output}")
    endif()
endfunction()

set(driver ${SCRATCH_DIR}/driver)
run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${SCRATCH_DIR}/prefix)
run(${QELCTL} new-driver my-reader_2 ${driver})
run(${CMAKE_COMMAND} -S ${driver} -B ${driver}/build -G Ninja -D CMAKE_PREFIX_PATH=${SCRATCH_DIR}/prefix
    -D CMAKE_CXX_COMPILER=${COMPILER}
    -D "CMAKE_CXX_FLAGS=-Wall -Wextra -Wpedantic -Wshadow -Werror")
run(${CMAKE_COMMAND} --build ${driver}/build)
run(${CHECK} --check ${driver}/build/devicedrivers/my-reader_2.so)

# A driver with a real connection keeps them, too, whether or not its instrument does what it should.
set(driver ${SCRATCH_DIR}/tcp)
run(${QELCTL} new-driver --link tcp tcp-reader ${driver})
run(${CMAKE_COMMAND} -S ${driver} -B ${driver}/build -G Ninja -D CMAKE_PREFIX_PATH=${SCRATCH_DIR}/prefix
    -D CMAKE_CXX_COMPILER=${COMPILER}
    -D "CMAKE_CXX_FLAGS=-Wall -Wextra -Wpedantic -Wshadow -Werror")
run(${CMAKE_COMMAND} --build ${driver}/build)
foreach(trouble IN ITEMS slow wrong-checksum)
    run(${PYTHON} ${driver}/emulator.py --tcp --trouble ${trouble} --accept 9
        -- ${QELCTL} check ${driver}/build/devicedrivers/tcp-reader.so)
endforeach()
run(${PYTHON} ${driver}/emulator.py --tcp --trouble unplug
    -- ${CHECK} --check ${driver}/build/devicedrivers/tcp-reader.so)

# What stands there is not written over.
execute_process(COMMAND ${QELCTL} new-driver other ${driver} RESULT_VARIABLE result ERROR_QUIET)
if(NOT result EQUAL 2)
    message(FATAL_ERROR "new-driver in a folder that is not empty: ${result}")
endif()
