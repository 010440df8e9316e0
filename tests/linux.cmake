# The tests that need the simulated card reader or the utilities.
tessel_tests(services tessel-rehearsal)
tessel_tests(viewmodel tessel-viewmodel tessel-rehearsal)
tessel_tests(faults tessel-viewmodel tessel-rehearsal)
tessel_tests(utilities tessel-rehearsal tessel-linux-system)
target_sources(utilities-tests PRIVATE support/DescribedMachine.cpp)

# A UDisks2 that answers as it is told.
add_executable(stand-in-udisks support/stand-in-udisks.cpp)
target_link_libraries(stand-in-udisks PRIVATE PkgConfig::UDISKS)
add_dependencies(utilities-tests stand-in-udisks diskutil authopen)
target_compile_definitions(utilities-tests PRIVATE
    TESSEL_DESCRIBED_MACHINES="${CMAKE_CURRENT_SOURCE_DIR}/machines"
    TESSEL_STAND_IN_UDISKS="$<TARGET_FILE:stand-in-udisks>"
    TESSEL_LINUX_PROGRAMS="$<TARGET_FILE_DIR:diskutil>")

# An authorization utility that breaks its promises.
add_executable(rogue-authopen support/rogue-authopen.cpp)
foreach(program services-tests faults-tests)
    add_dependencies(${program} rogue-authopen)
    target_compile_definitions(${program} PRIVATE TESSEL_ROGUE_AUTHOPEN="$<TARGET_FILE:rogue-authopen>")
endforeach()
target_compile_definitions(faults-tests PRIVATE
    TESSEL_FAULT_TABLE="${CMAKE_CURRENT_SOURCE_DIR}/faults/write-path.txt")

# A mount that stops answering.
pkg_check_modules(FUSE REQUIRED IMPORTED_TARGET fuse3)
add_executable(stalling-file-system support/stalling-file-system.cpp)
target_link_libraries(stalling-file-system PRIVATE PkgConfig::FUSE)
target_compile_definitions(stalling-file-system PRIVATE FUSE_USE_VERSION=31)
add_dependencies(services-tests stalling-file-system)
target_compile_definitions(services-tests PRIVATE
    TESSEL_STALLING_FILE_SYSTEM="$<TARGET_FILE:stalling-file-system>")

# Qt paints large areas on threads of its own, which the thread sanitizer can't follow. No other tests ask it to
# overlook anything.
set(testEnvironment "TSAN_OPTIONS=ignore_noninstrumented_modules=1")
tessel_tests(views tessel-views Qt6::Test)
tessel_tests(app tessel-window-rehearsal Qt6::Test)
foreach(floor views app)
    target_sources(${floor}-tests PRIVATE support/OffscreenMain.cpp)
endforeach()

add_test(NAME packaging/installation
    COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/packaging/installation" "${PROJECT_BINARY_DIR}")
set_tests_properties(packaging/installation PROPERTIES TIMEOUT 120 ENVIRONMENT "${testEnvironment}")

add_test(NAME accessibility/every-action
    COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/accessibility/every-action" "$<TARGET_FILE:velmora-tessel-rehearsal>")
set_tests_properties(accessibility/every-action PROPERTIES TIMEOUT 180 ENVIRONMENT "${testEnvironment}")
