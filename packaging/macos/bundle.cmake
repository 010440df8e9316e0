# Makes the program a bundle, as a Mac starts programs: VelmoraTessel.app.
set(bundleIcon "${CMAKE_CURRENT_LIST_DIR}/VelmoraTessel.icns")
set(minimumSystem "${CMAKE_OSX_DEPLOYMENT_TARGET}")
if(NOT minimumSystem)
    set(minimumSystem 13.0)
endif()

target_sources(velmora-tessel PRIVATE "${bundleIcon}")
set_source_files_properties("${bundleIcon}" PROPERTIES MACOSX_PACKAGE_LOCATION Resources)
set_target_properties(velmora-tessel PROPERTIES
    OUTPUT_NAME VelmoraTessel
    MACOSX_BUNDLE TRUE
    MACOSX_BUNDLE_INFO_PLIST "${CMAKE_CURRENT_LIST_DIR}/Info.plist.in")

# The manual, which F1 opens.
foreach(chapter troubleshooting keeping-disks-safe)
    set(text "${PROJECT_SOURCE_DIR}/docs/${chapter}.md")
    target_sources(velmora-tessel PRIVATE "${text}")
    set_source_files_properties("${text}" PROPERTIES MACOSX_PACKAGE_LOCATION Resources/manual)
endforeach()
