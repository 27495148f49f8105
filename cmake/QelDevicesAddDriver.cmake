# qel_add_driver(NAME SOURCES ... METADATA plugin.json [TRANSLATIONS plugin_en.ts ...])
#
# Builds the driver plugin NAME: a module with hidden symbols and no undefined ones, whose catalogues
# stand in its resources under ":/qel/devices/NAME".
include(${CMAKE_CURRENT_LIST_DIR}/QelDevicesCatalogues.cmake)

function(qel_add_driver name)
    cmake_parse_arguments(PARSE_ARGV 1 driver "" "METADATA" "SOURCES;TRANSLATIONS")
    add_library(${name} MODULE ${driver_SOURCES})
    target_link_libraries(${name} PRIVATE Qel::Devices Qt5::Core)
    set_target_properties(${name} PROPERTIES
        PREFIX ""
        AUTOMOC ON
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON)
    if(driver_TRANSLATIONS)
        qel_add_catalogues(${name} /qel/devices/${name} ${driver_TRANSLATIONS})
    endif()
endfunction()
