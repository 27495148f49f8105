# qel_add_driver(NAME SOURCES source.cpp... METADATA plugin.json [TRANSLATIONS plugin_en.ts...]
#     [ISOLATED])
#
# Builds the driver plugin NAME, a module that shows no symbols and misses none.
#
# METADATA names the file that Q_PLUGIN_METADATA names in the sources: a JSON object with the strings
# "manufacturer", "url", "resource-id" and "version". What is wrong with it stops the configuration.
#
# TRANSLATIONS are id-based catalogues, named plugin_LANGUAGE.ts. Compiled, they stand in the plugin's
# resources under ":/qel/devices/NAME", where the library finds them. This needs Qt's linguist tools.
# A text that one of them has and another one lacks stops the build.
#
# The build puts the plugin into the folder "devicedrivers" beside the executables of the project, the
# installation puts it where the library looks under the prefix: into the folder "devicedrivers" of
# Qt's plugin directory where the prefix is Qt's own, and of CMAKE_INSTALL_BINDIR elsewhere.
#
# ISOLATED puts it into folders "devicedrivers-isolated" instead: the driver runs in a process of its own,
# where the package qeldevicesd is installed, and cannot take an application along when it crashes.
#
# In a project with enable_testing(), the test NAME_conformance has the tool qelctl, which is installed
# along with the library, judge whether the plugin keeps the rules for drivers. It is skipped when that
# cannot be judged, because no instrument is there for instance. What the tool is to be told besides
# stands in the cache variable NAME_CHECK_OPTIONS: "--device;4711;--unsafe;--yes".
include(${CMAKE_CURRENT_LIST_DIR}/QelDevicesCatalogues.cmake)

function(qel_add_driver name)
    cmake_parse_arguments(PARSE_ARGV 1 driver "ISOLATED" "METADATA" "SOURCES;TRANSLATIONS")
    if(driver_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "qel_add_driver(${name}): cannot make sense of"
            " '${driver_UNPARSED_ARGUMENTS}'; it takes SOURCES, METADATA, TRANSLATIONS and ISOLATED")
    endif()
    _qel_check_metadata(${name} "${driver_METADATA}")
    _qel_check_catalogue_names(${name} "${driver_TRANSLATIONS}")
    _qel_check_catalogue_texts(${name} "${driver_TRANSLATIONS}")

    add_library(${name} MODULE ${driver_SOURCES})
    target_link_libraries(${name} PRIVATE Qel::Devices Qt5::Core)
    set_target_properties(${name} PROPERTIES
        PREFIX ""
        AUTOMOC ON
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    # Clang leaves the symbols of its sanitizers to the executable.
    if(NOT (CMAKE_CXX_COMPILER_ID MATCHES "Clang" AND CMAKE_CXX_FLAGS MATCHES "-fsanitize="))
        target_link_options(${name} PRIVATE LINKER:-z,defs)
    endif()
    if(driver_TRANSLATIONS)
        qel_add_catalogues(${name} /qel/devices/${name} ${driver_TRANSLATIONS})
    endif()
    set(folder devicedrivers)
    if(driver_ISOLATED)
        set(folder devicedrivers-isolated)
    endif()
    _qel_place_driver(${name} ${folder})
    if(QelDevices_QELCTL)
        set(${name}_CHECK_OPTIONS "" CACHE STRING "What else to tell qelctl check, with ; between")
        add_test(NAME ${name}_conformance
            COMMAND ${QelDevices_QELCTL} check ${${name}_CHECK_OPTIONS} $<TARGET_FILE:${name}>)
        set(incomplete 9)
        set_tests_properties(${name}_conformance PROPERTIES SKIP_RETURN_CODE ${incomplete})
    endif()
endfunction()

function(_qel_check_metadata name file)
    if(NOT file)
        message(FATAL_ERROR "qel_add_driver(${name}): METADATA is missing; name the JSON file that"
            " describes the plugin")
    endif()
    get_filename_component(path "${file}" ABSOLUTE)
    if(NOT EXISTS "${path}" OR IS_DIRECTORY "${path}")
        message(FATAL_ERROR "qel_add_driver(${name}): there is no metadata file '${path}'")
    endif()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${path}")

    file(READ "${path}" json)
    string(JSON type ERROR_VARIABLE error TYPE "${json}")
    if(error)
        message(FATAL_ERROR "qel_add_driver(${name}): '${path}' is not JSON: ${error}")
    elseif(NOT type STREQUAL "OBJECT")
        message(FATAL_ERROR "qel_add_driver(${name}): '${path}' must hold one JSON object")
    endif()
    foreach(key IN ITEMS manufacturer url resource-id version)
        string(JSON type ERROR_VARIABLE error TYPE "${json}" ${key})
        if(error)
            message(FATAL_ERROR "qel_add_driver(${name}): the key \"${key}\" is missing in '${path}'")
        elseif(NOT type STREQUAL "STRING")
            message(FATAL_ERROR "qel_add_driver(${name}): the key \"${key}\" in '${path}' must hold"
                " a string")
        endif()
    endforeach()
endfunction()

function(_qel_check_catalogue_names name catalogues)
    foreach(catalogue IN LISTS catalogues)
        get_filename_component(file "${catalogue}" NAME)
        if(NOT file MATCHES "^plugin(_[A-Za-z0-9_]+)?\\.ts$")
            message(FATAL_ERROR "qel_add_driver(${name}): the catalogue '${catalogue}' would not be"
                " found at run time; call it plugin_LANGUAGE.ts, plugin_de.ts for instance")
        endif()
    endforeach()
endfunction()

# The ids with a text in `catalogue`, as the list `ids`.
function(_qel_texts_of catalogue ids)
    file(READ "${catalogue}" xml)
    # What means something to lists is of no interest here.
    string(REGEX REPLACE "[][;]" "_" xml "${xml}")
    string(REPLACE "<message" ";<message" messages "${xml}")
    set(found "")
    foreach(message IN LISTS messages)
        if(message MATCHES "^<message[^>]* id=\"([^\"]*)\"")
            set(id "${CMAKE_MATCH_1}")
            set(none "<translation[^>]*(/>|>[ \t\r\n]*</translation>|type=\"(vanished|obsolete)\")")
            if(message MATCHES "<translation" AND NOT message MATCHES "${none}")
                list(APPEND found "${id}")
            endif()
        endif()
    endforeach()
    set(${ids} "${found}" PARENT_SCOPE)
endfunction()

function(_qel_check_catalogue_texts name catalogues)
    set(all "")
    set(files "")
    foreach(catalogue IN LISTS catalogues)
        get_filename_component(path "${catalogue}" ABSOLUTE)
        # One that the build makes is not there yet.
        if(EXISTS "${path}")
            set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${path}")
            _qel_texts_of("${path}" ids)
            set("ids_of_${path}" "${ids}")
            list(APPEND files "${path}")
            list(APPEND all ${ids})
        endif()
    endforeach()
    list(REMOVE_DUPLICATES all)
    set(missing "")
    foreach(path IN LISTS files)
        foreach(id IN LISTS all)
            if(NOT id IN_LIST "ids_of_${path}")
                string(APPEND missing "\n  '${id}' in '${path}'")
            endif()
        endforeach()
    endforeach()
    if(missing)
        message(FATAL_ERROR "qel_add_driver(${name}): users of one language would see an id instead of"
            " a sentence; these texts are missing:${missing}")
    endif()
endfunction()

function(_qel_place_driver name folder)
    include(GNUInstallDirs)

    set(executables ${CMAKE_CURRENT_BINARY_DIR})
    if(CMAKE_RUNTIME_OUTPUT_DIRECTORY)
        set(executables ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
    endif()
    set_target_properties(${name} PROPERTIES
        LIBRARY_OUTPUT_DIRECTORY ${executables}/${folder})

    get_target_property(qmake Qt5::qmake IMPORTED_LOCATION)
    foreach(what IN ITEMS PREFIX PLUGINS)
        execute_process(COMMAND ${qmake} -query QT_INSTALL_${what}
            OUTPUT_VARIABLE qt_${what} OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    endforeach()
    file(RELATIVE_PATH qt_PLUGINS ${qt_PREFIX} ${qt_PLUGINS})
    # The prefix is not settled before the installation: "cmake --install --prefix" changes it.
    install(CODE "
        set(qel_driver_directory \"${CMAKE_INSTALL_BINDIR}/${folder}\")
        if(CMAKE_INSTALL_PREFIX STREQUAL \"${qt_PREFIX}\")
            set(qel_driver_directory \"${qt_PLUGINS}/${folder}\")
        endif()"
        ALL_COMPONENTS)
    if(NOT CMAKE_INSTALL_PREFIX STREQUAL qt_PREFIX)
        set_target_properties(${name} PROPERTIES
            INSTALL_RPATH "\$ORIGIN/../../${CMAKE_INSTALL_LIBDIR}")
    endif()
    install(TARGETS ${name} LIBRARY DESTINATION "\${qel_driver_directory}")
endfunction()
