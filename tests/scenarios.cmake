# One test "scenario.NAME" for each folder of scenarios/ that has a screen; see docs/testing.md.
file(GLOB screens CONFIGURE_DEPENDS scenarios/*/screen)
foreach(screen ${screens})
    cmake_path(GET screen PARENT_PATH folder)
    cmake_path(GET folder FILENAME name)
    # How long it may take at most, and with that how early it is started: the long ones first.
    set(seconds 600)
    if(EXISTS ${folder}/seconds)
        file(STRINGS ${folder}/seconds seconds LIMIT_COUNT 1)
    endif()
    math(EXPR limit "${seconds} + 60")
    add_test(NAME scenario.${name} COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/scenarios/run ${CMAKE_BINARY_DIR} ${name})
    set_tests_properties(scenario.${name} PROPERTIES TIMEOUT ${limit} COST ${seconds} LABELS host)
    if(TERN_SANITIZE)
        # The program ends under another identity than it began with: the leak detector may not look at it then.
        set_tests_properties(scenario.${name} PROPERTIES ENVIRONMENT "TERN_QUICK=1;ASAN_OPTIONS=detect_leaks=0")
    endif()
endforeach()
