# Stands in for the packages of Qt on a Mac: this computer's headers, and the names that its libraries export.
get_filename_component(prefix "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)

function(stand_in_for_qt module)
    if(TARGET Qt6::${module})
        return()
    endif()
    add_library(Qt6::${module} INTERFACE IMPORTED)
    target_include_directories(Qt6::${module} SYSTEM INTERFACE "${prefix}/include/qt6"
        "${prefix}/include/qt6/Qt${module}")
    target_link_libraries(Qt6::${module} INTERFACE "${prefix}/lib/libQt6${module}.tbd" ${ARGN})
endfunction()
stand_in_for_qt(Core)
stand_in_for_qt(Gui Qt6::Core)
stand_in_for_qt(Widgets Qt6::Gui)
stand_in_for_qt(Svg Qt6::Gui)
stand_in_for_qt(Test Qt6::Core)

# As qt_add_resources(target name PREFIX ... BASE ... FILES ...), by this computer's resource compiler.
function(qt_add_resources target name)
    cmake_parse_arguments(PARSE_ARGV 2 resources "" "PREFIX;BASE" "FILES")
    set(collection "${CMAKE_CURRENT_BINARY_DIR}/${name}.qrc")
    set(files "")
    foreach(file IN LISTS resources_FILES)
        file(RELATIVE_PATH alias "${CMAKE_CURRENT_SOURCE_DIR}/${resources_BASE}" "${CMAKE_CURRENT_SOURCE_DIR}/${file}")
        string(APPEND files "<file alias=\"${alias}\">${CMAKE_CURRENT_SOURCE_DIR}/${file}</file>")
    endforeach()
    file(CONFIGURE OUTPUT "${collection}"
        CONTENT "<RCC><qresource prefix=\"${resources_PREFIX}\">${files}</qresource></RCC>")
    set(source "${CMAKE_CURRENT_BINARY_DIR}/qrc_${name}.cpp")
    add_custom_command(OUTPUT "${source}" DEPENDS "${collection}" ${resources_FILES} VERBATIM
        COMMAND /usr/lib/qt6/libexec/rcc --name ${name} --output "${source}" "${collection}")
    target_sources(${target} PRIVATE "${source}")
endfunction()
