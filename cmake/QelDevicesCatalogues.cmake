# qel_add_catalogues(TARGET PREFIX CATALOGUE.ts...)
#
# Compiles id-based translation catalogues and puts them into TARGET's resources under PREFIX, in a
# collection named TARGET_translations. plugin_de.ts becomes PREFIX/plugin_de.qm.
function(qel_add_catalogues target prefix)
    find_package(Qt5 REQUIRED COMPONENTS Core LinguistTools)
    set(directory ${CMAKE_CURRENT_BINARY_DIR}/${target}_translations)
    set(entries "")
    set(compiled "")
    foreach(source IN LISTS ARGN)
        get_filename_component(source ${source} ABSOLUTE)
        get_filename_component(name ${source} NAME_WE)
        set(qm ${directory}/${name}.qm)
        add_custom_command(
            OUTPUT ${qm}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${directory}
            COMMAND Qt5::lrelease -silent -idbased ${source} -qm ${qm}
            DEPENDS ${source}
            COMMENT "Compiling catalogue ${name}.qm"
            VERBATIM)
        string(APPEND entries "        <file>${name}.qm</file>\n")
        list(APPEND compiled ${qm})
    endforeach()

    set(collection ${directory}/${target}_translations.qrc)
    file(CONFIGURE OUTPUT ${collection} CONTENT
"<RCC>
    <qresource prefix=\"${prefix}\">
${entries}    </qresource>
</RCC>
" @ONLY)
    # Format 1 holds no time stamps, so that two builds of one commit are equal.
    set(resources ${directory}/qrc_${target}_translations.cpp)
    add_custom_command(
        OUTPUT ${resources}
        COMMAND Qt5::rcc --format-version 1 --name ${target}_translations
                --output ${resources} ${collection}
        DEPENDS ${collection} ${compiled}
        COMMENT "Collecting the catalogues of ${target}"
        VERBATIM)
    set_source_files_properties(${resources} PROPERTIES SKIP_AUTOGEN ON)
    target_sources(${target} PRIVATE ${resources})
endfunction()
