# cmake -D NM=nm -D LIBRARY=libqeldevices.so -D EXPECTED=exports.txt -P check_exports.cmake
#
# Fails unless LIBRARY exports exactly what EXPECTED lists. Left aside are instances of the standard
# library's templates, type information the compiler adds, Qt's inline functions where the compiler
# does not optimise, and the sanitizers' own symbols.
execute_process(COMMAND ${NM} --dynamic --demangle --defined-only ${LIBRARY}
    OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "(^|\n)[0-9a-f]+ [A-Za-z] " "\\1" symbols "${symbols}")
string(STRIP "${symbols}" symbols)
string(REPLACE "\n" ";" symbols "${symbols}")
list(REMOVE_DUPLICATES symbols)
file(STRINGS ${EXPECTED} expected)

set(missing ${expected})
list(REMOVE_ITEM missing ${symbols})
set(surplus ${symbols})
list(REMOVE_ITEM surplus ${expected})
list(FILTER surplus EXCLUDE REGEX "^((typeinfo|typeinfo name|vtable) for |std::|Q[A-Za-z]+::|__odr_asan\\.)")
foreach(kind IN ITEMS missing surplus)
    foreach(symbol IN LISTS ${kind})
        message(SEND_ERROR "${kind}: ${symbol}")
    endforeach()
endforeach()
