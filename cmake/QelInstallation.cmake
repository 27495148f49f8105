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

# qel_install_pkg_config(LIBRARY VERSION ... DESCRIPTION ... REQUIRES ... COMPONENT ...)
#
# Installs LIBRARY.pc, with paths relative to itself, as the prefix is settled when installing.
function(qel_install_pkg_config library)
    cmake_parse_arguments(PARSE_ARGV 1 pc "" "VERSION;DESCRIPTION;REQUIRES;COMPONENT" "")
    string(REGEX REPLACE "[^/]+" ".." pc_prefix ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/library.pc.in ${library}.pc @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${library}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT ${pc_COMPONENT})
endfunction()

# Debian's zsh looks for what packages bring in a folder of its own.
set(QEL_ZSH_FUNCTIONS site-functions)
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr" AND EXISTS /etc/debian_version)
    set(QEL_ZSH_FUNCTIONS vendor-completions)
endif()
