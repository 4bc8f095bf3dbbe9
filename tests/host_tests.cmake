# Tests that run programs on a view of the host: the scenarios, the rehearsal, the package.

# add_host_test(NAME SECONDS COMMAND...): SECONDS is how long it may take at most, and with that how early it is
# started: the long ones first.
function(add_host_test name seconds)
    add_test(NAME ${name} COMMAND ${ARGN})
    set_tests_properties(${name} PROPERTIES TIMEOUT ${seconds} COST ${seconds} LABELS host)
    if(TERN_SANITIZE)
        # The program ends under another identity than it began with: the leak detector may not look at it then.
        set_tests_properties(${name} PROPERTIES ENVIRONMENT "TERN_QUICK=1;ASAN_OPTIONS=detect_leaks=0")
    endif()
endfunction()

# One test "scenario.STEP.CASE" for each folder of scenarios/ that has a screen; see docs/testing.md.
set(scenarios ${CMAKE_CURRENT_SOURCE_DIR}/scenarios)
file(GLOB screens CONFIGURE_DEPENDS RELATIVE ${scenarios} ${scenarios}/*/*/screen)
foreach(screen ${screens})
    cmake_path(GET screen PARENT_PATH scenario)
    string(REPLACE "/" "." name ${scenario})
    set(seconds 600)
    if(EXISTS ${scenarios}/${scenario}/seconds)
        file(STRINGS ${scenarios}/${scenario}/seconds seconds LIMIT_COUNT 1)
    endif()
    math(EXPR limit "${seconds} + 60")    # the scenario's own limit comes first, and says more
    add_host_test(scenario.${name} ${limit} ${scenarios}/run-scenario ${CMAKE_BINARY_DIR} ${scenario})
endforeach()

# Random hosts, ten in a test.
foreach(first 1 11 21 31 41)
    math(EXPR last "${first} + 9")
    add_host_test(identity.${first} 600 ${CMAKE_CURRENT_SOURCE_DIR}/identity/random-hosts ${CMAKE_BINARY_DIR} ${first} ${last})
endforeach()

add_host_test(rehearsal 600 ${CMAKE_CURRENT_SOURCE_DIR}/rehearsal ${CMAKE_BINARY_DIR})
