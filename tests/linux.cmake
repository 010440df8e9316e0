# The tests that need the simulated card reader or the utilities.
target_link_libraries(platform-tests PRIVATE tessel-rehearsal)
tessel_tests(services tessel-rehearsal)
tessel_tests(viewmodel tessel-viewmodel tessel-rehearsal)
tessel_tests(faults tessel-viewmodel tessel-rehearsal)
tessel_tests(utilities tessel-rehearsal tessel-linux-system)
target_sources(utilities-tests PRIVATE support/DescribedMachine.cpp)

add_dependencies(utilities-tests diskutil authopen)
target_compile_definitions(utilities-tests PRIVATE
    TESSEL_DESCRIBED_MACHINES="${CMAKE_CURRENT_SOURCE_DIR}/machines"
    TESSEL_STAND_IN_UDISKS="${CMAKE_CURRENT_SOURCE_DIR}/support/stand-in-udisks"
    TESSEL_LINUX_PROGRAMS="$<TARGET_FILE_DIR:diskutil>")

target_compile_definitions(faults-tests PRIVATE
    TESSEL_ROGUE_AUTHOPEN="${CMAKE_CURRENT_SOURCE_DIR}/support/rogue-authopen"
    TESSEL_FAULT_TABLE="${CMAKE_CURRENT_SOURCE_DIR}/faults/write-path.txt")

# The rows of the fault table are dealt out to four tests instead of starting the program once for each row.
foreach(quarter RANGE 3)
    add_test(NAME faults/rows-${quarter} COMMAND faults-tests --gtest_filter=Rows/*)
    set_tests_properties(faults/rows-${quarter} PROPERTIES TIMEOUT 120 SKIP_REGULAR_EXPRESSION "\\[  SKIPPED \\]"
        ENVIRONMENT "GTEST_TOTAL_SHARDS=4;GTEST_SHARD_INDEX=${quarter}")
endforeach()

if(NOT TESSEL_WINDOW)
    return()
endif()

# Qt paints large areas on threads of its own, which the thread sanitizer can't follow. All other tests run without
# exceptions.
set(testEnvironment "TSAN_OPTIONS=ignore_noninstrumented_modules=1")
tessel_tests(views tessel-views Qt6::Test)
tessel_tests(app tessel-window-rehearsal Qt6::Test)
foreach(folder views app)
    target_sources(${folder}-tests PRIVATE support/OffscreenMain.cpp)
endforeach()

add_test(NAME packaging/installation
    COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/packaging/installation" "${PROJECT_BINARY_DIR}")
set_tests_properties(packaging/installation PROPERTIES TIMEOUT 120 ENVIRONMENT "${testEnvironment}")

add_test(NAME accessibility/every-action
    COMMAND "${CMAKE_CURRENT_SOURCE_DIR}/accessibility/every-action" "$<TARGET_FILE:velmora-tessel-rehearsal>")
set_tests_properties(accessibility/every-action PROPERTIES TIMEOUT 180 ENVIRONMENT "${testEnvironment}")
