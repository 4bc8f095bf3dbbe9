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

# One test "scenario.NAME" for each folder of scenarios/ that has a screen; see docs/testing.md.
file(GLOB screens CONFIGURE_DEPENDS scenarios/*/screen)
foreach(screen ${screens})
    cmake_path(GET screen PARENT_PATH folder)
    cmake_path(GET folder FILENAME name)
    set(seconds 600)
    if(EXISTS ${folder}/seconds)
        file(STRINGS ${folder}/seconds seconds LIMIT_COUNT 1)
    endif()
    math(EXPR limit "${seconds} + 60")    # the scenario's own limit comes first, and says more
    add_host_test(scenario.${name} ${limit} ${CMAKE_CURRENT_SOURCE_DIR}/scenarios/run ${CMAKE_BINARY_DIR} ${name})
endforeach()

add_host_test(rehearsal 600 ${CMAKE_CURRENT_SOURCE_DIR}/rehearsal ${CMAKE_BINARY_DIR})
