# Tests are Windows programs; on any other system they run under Wine.
include(TestSuites)

set(QUORVEL_GOOGLETEST_SOURCES "/usr/src/googletest" CACHE PATH "Where the sources of GoogleTest are")
if(NOT EXISTS "${QUORVEL_GOOGLETEST_SOURCES}/CMakeLists.txt")
  message(FATAL_ERROR "${QUORVEL_GOOGLETEST_SOURCES} is missing. Cure: apt-get install googletest")
endif()
set(INSTALL_GTEST OFF)
set(BUILD_GMOCK ON)
# Before the framework's own folders, in all of its parts and users: shadows one empty header of it.
if(NOT MSVC)
  include_directories(BEFORE "${CMAKE_SOURCE_DIR}/tests/support/gtest_custom")
endif()
# Its build description is older than the rule that options leave set variables alone.
set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)
set(CMAKE_POLICY_DEFAULT_CMP0091 NEW)
add_subdirectory("${QUORVEL_GOOGLETEST_SOURCES}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)

# Debian's own Python first: only that one sees the Python packages that scripts/setup installs. Tests in Python are not
# registered on Windows.
if(CMAKE_CROSSCOMPILING)
  find_program(QUORVEL_PYTHON NAMES python3 HINTS /usr/bin REQUIRED)
endif()

# Three limits, the inner first: the watchdog of the test program knows which case hangs, run-in-wine ends a program whose
# watchdog hangs too, ctest ends run-in-wine. A test of ctest holds the cases of a suite, so the outer ones are wide.
set(QUORVEL_WATCHDOG_SECONDS 60)
set(QUORVEL_PROGRAM_SECONDS 600)
set(QUORVEL_CTEST_SECONDS 630)

# A test with RESOURCE_GROUPS desktops:1 has a desktop for itself: a Wine server with its prefix and display. The scripts
# say how many there are; ctest learns it from this file: ctest --resource-spec-file build/release/desktops.json. Without
# the file nobody keeps such tests apart.
set(desktops "")
file(STRINGS "${CMAKE_SOURCE_DIR}/scripts/lib/wine-environment" count REGEX "^wine_desktop_count=[0-9]+$")
string(REPLACE "wine_desktop_count=" "" count "${count}")
foreach(id RANGE 1 ${count})
  math(EXPR id "${id} - 1")
  list(APPEND desktops "{\"id\": \"${id}\"}")
endforeach()
list(JOIN desktops ", " desktops)
file(CONFIGURE OUTPUT "${CMAKE_BINARY_DIR}/desktops.json" CONTENT
  [[{"version": {"major": 1, "minor": 0}, "local": [{"desktops": [@desktops@]}]}]] @ONLY)
set_property(DIRECTORY "${CMAKE_SOURCE_DIR}" APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS scripts/lib/wine-environment)

# Before a Windows program in the COMMAND of add_test: QUORVEL_RUN takes the program's exit code for the verdict,
# QUORVEL_RUN_TESTS asks for GoogleTest's own word as well. Empty on Windows.
if(CMAKE_CROSSCOMPILING)
  set(QUORVEL_RUN "${CMAKE_SOURCE_DIR}/scripts/run-in-wine" --time-limit ${QUORVEL_PROGRAM_SECONDS})
  set(QUORVEL_RUN_TESTS ${QUORVEL_RUN} --expect-passed)
endif()

# Whether the variables of the plug-in's code can be put back before each test; see tests/support/isolation/. Without,
# each case gets a process of its own.
set(QUORVEL_GATHER_PLUGIN_VARIABLES OFF)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  set(QUORVEL_GATHER_PLUGIN_VARIABLES ON)
endif()
set(QUORVEL_PLUGIN_VARIABLES_SCRIPT "${CMAKE_SOURCE_DIR}/tests/support/isolation/PluginVariables.ld")

# quorvel_add_test_program(<name> SOURCES <file>... LIBRARIES <target>...): a program of GoogleTest cases, with the
# project's main and log recorder, which ctest does not know of yet.
function(quorvel_add_test_program name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  quorvel_read_cases(cases ${arg_SOURCES})
  quorvel_suites_of(suites ${cases})
  list(JOIN suites "\", \"" suite_list)
  set(registered "${CMAKE_CURRENT_BINARY_DIR}/${name}_suites.cpp")
  file(CONFIGURE OUTPUT "${registered}" @ONLY CONTENT [[#include "support/main/RegisteredSuites.h"

const std::vector<std::string_view> kRegisteredSuites = {"@suite_list@"};
]])
  add_executable(${name} ${arg_SOURCES} "${registered}")
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/src" "${CMAKE_SOURCE_DIR}/tests")
  target_link_libraries(${name} PRIVATE quorvel_test_main ${arg_LIBRARIES})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
  if(QUORVEL_GATHER_PLUGIN_VARIABLES)
    target_link_options(${name} PRIVATE "-Wl,-T,${QUORVEL_PLUGIN_VARIABLES_SCRIPT}")
    set_target_properties(${name} PROPERTIES LINK_DEPENDS "${QUORVEL_PLUGIN_VARIABLES_SCRIPT}")
  endif()
  target_precompile_headers(${name} REUSE_FROM quorvel_test_headers)
  quorvel_accept_precompiled_headers(${name})
  quorvel_warnings(${name})
endfunction()

# quorvel_add_unit_tests(<name> SOURCES <file>... LIBRARIES <target>... [SERIAL] [ISOLATED <suite>...])
# A program whose suites become tests of ctest under their own names, labelled with the program's name. The cases of a
# suite run in one process; each finds the plug-in's variables and the doubles as in a new one.
# SERIAL: the cases open windows, start processes or write files that others look for; never two of these at a time on one
# desktop.
# ISOLATED: every case of these suites becomes a test of ctest, in a process of its own, because it leaves something
# behind that cannot be put back. Say what, in a comment.
function(quorvel_add_unit_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "SERIAL" "" "SOURCES;LIBRARIES;ISOLATED")
  quorvel_add_test_program(${name} SOURCES ${arg_SOURCES} LIBRARIES ${arg_LIBRARIES})
  quorvel_read_cases(cases ${arg_SOURCES})
  quorvel_suites_of(suites ${cases})
  set(properties TIMEOUT ${QUORVEL_CTEST_SECONDS} LABELS ${name})
  if(arg_SERIAL)
    list(APPEND properties RESOURCE_GROUPS desktops:1)
  endif()
  if(QUORVEL_GATHER_PLUGIN_VARIABLES)
    set(isolated ${arg_ISOLATED})
  else()
    set(isolated ${suites})
  endif()
  foreach(suite IN LISTS suites)
    if(NOT suite IN_LIST isolated)
      # Parameterised cases stand behind the name of an instance, typed ones have a number behind the suite's name.
      quorvel_add_gtest(${name} ${suite} "${suite}.*:*/${suite}.*:${suite}/*.*" ${properties})
    endif()
  endforeach()
  foreach(case IN LISTS cases)
    quorvel_suites_of(suite ${case})
    if(suite IN_LIST isolated)
      quorvel_add_gtest(${name} ${case} "${case}:*/${case}/*" ${properties})
    endif()
  endforeach()
endfunction()

# quorvel_add_gtest(<program> <name of the test> <filter> <property> <value>...)
function(quorvel_add_gtest program name filter)
  add_test(NAME ${name} COMMAND ${QUORVEL_RUN_TESTS} $<TARGET_FILE:${program}> "--gtest_filter=${filter}")
  set_tests_properties(${name} PROPERTIES ${ARGN})
endfunction()
