# Hardens the packaged program: the options that this Debian release builds its own packages with, all hardening
# included, and the standard library's cheap checks.

# debian_flags(RESULT VARIABLE...): what dpkg-buildflags gives for CXXFLAGS and the like, as a list.
function(debian_flags result)
    foreach(variable ${ARGN})
        execute_process(
            COMMAND ${CMAKE_COMMAND} -E env DEB_BUILD_MAINT_OPTIONS=hardening=+all dpkg-buildflags --get ${variable}
            WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
            OUTPUT_VARIABLE text
            COMMAND_ERROR_IS_FATAL ANY)
        separate_arguments(flags UNIX_COMMAND "${text}")
        list(APPEND all ${flags})
    endforeach()
    set(${result} ${all} PARENT_SCOPE)
endfunction()

debian_flags(compile CPPFLAGS CXXFLAGS)
debian_flags(link LDFLAGS)
# No folder's name may end up in the program: dpkg-buildflags maps neither a build folder outside the sources nor names
# with blanks. The last match counts.
target_compile_options(build_options INTERFACE ${compile} -fPIE
    -ffile-prefix-map=${CMAKE_SOURCE_DIR}=. -ffile-prefix-map=${CMAKE_BINARY_DIR}=.)
target_compile_definitions(build_options INTERFACE _GLIBCXX_ASSERTIONS)
target_link_options(build_options INTERFACE ${link} -pie)
