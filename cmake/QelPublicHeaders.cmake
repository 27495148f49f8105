# qel_public_headers(TARGET ROOM HEADER...)
#
# Lets those who link TARGET include HEADER as <ROOM/HEADER>, in the tree as from an installation, and
# none of the other headers of the folder.
function(qel_public_headers target room)
    set(include ${CMAKE_CURRENT_BINARY_DIR}/include)
    file(MAKE_DIRECTORY ${include}/${room})
    foreach(header IN LISTS ARGN)
        file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${header} ${include}/${room}/${header} SYMBOLIC)
    endforeach()
    target_include_directories(${target} INTERFACE
        $<BUILD_INTERFACE:${include}>
        $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
endfunction()
