# Fuzzers come with clang. They get a configuration of their own, so that they run whatever compiler
# the project is built with, and always under sanitizers: a build that has them need not repeat it.
option(QEL_FUZZING "Build the fuzzers; set by the test that builds them" OFF)
set(QEL_FUZZERS_DIRECTORY ${PROJECT_BINARY_DIR}/fuzzer)

if(QEL_FUZZING)
    add_custom_target(fuzzers)
elseif(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize=")
    find_program(QEL_FUZZING_COMPILER NAMES clang++ clang++-14 DOC "The clang that builds fuzzers")
    if(QEL_FUZZING_COMPILER)
        add_test(NAME fuzzers_build
            COMMAND ${CMAKE_CTEST_COMMAND}
                --build-and-test ${PROJECT_SOURCE_DIR} ${QEL_FUZZERS_DIRECTORY}
                --build-generator ${CMAKE_GENERATOR}
                --build-target fuzzers
                --build-noclean
                --build-options
                    -DCMAKE_CXX_COMPILER=${QEL_FUZZING_COMPILER}
                    -DCMAKE_BUILD_TYPE=Debug
                    -DCMAKE_CXX_FLAGS_DEBUG=-g1
                    "-DCMAKE_CXX_FLAGS=-O1 -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined"
                    -DQEL_FUZZING=ON)
        set_tests_properties(fuzzers_build PROPERTIES FIXTURES_SETUP fuzzers TIMEOUT 900)
    else()
        message(WARNING "clang++ not found: the tests lack the fuzzers")
    endif()
endif()

# qel_add_fuzzer(NAME SOURCES... LIBRARIES ... OPTIONS ...): one fuzzer, named NAME in ctest too.
function(qel_add_fuzzer name)
    cmake_parse_arguments(PARSE_ARGV 1 fuzzer "" "" "LIBRARIES;OPTIONS")
    if(QEL_FUZZING)
        add_executable(${name} EXCLUDE_FROM_ALL ${fuzzer_UNPARSED_ARGUMENTS})
        target_link_libraries(${name} PRIVATE ${fuzzer_LIBRARIES})
        target_link_options(${name} PRIVATE -fsanitize=fuzzer)
        add_dependencies(fuzzers ${name})
    elseif(QEL_FUZZING_COMPILER AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize=")
        add_test(NAME ${name}
            COMMAND ${QEL_FUZZERS_DIRECTORY}/tests/${name}
                -seed=1 -timeout=10 -rss_limit_mb=1024
                -artifact_prefix=${QEL_FUZZERS_DIRECTORY}/${name}- ${fuzzer_OPTIONS})
        # Leaks are left out: Qt's JSON parser loses the first of two objects under the same key.
        set_tests_properties(${name} PROPERTIES FIXTURES_REQUIRED fuzzers TIMEOUT 300
            ENVIRONMENT ASAN_OPTIONS=detect_leaks=0)
    endif()
endfunction()
