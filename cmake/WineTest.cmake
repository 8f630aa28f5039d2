# Tests are Windows programs; on any other system they run under Wine.
include(GoogleTest)

set(QUORVEL_GOOGLETEST_SOURCES "/usr/src/googletest" CACHE PATH "Where the sources of GoogleTest are")
if(NOT EXISTS "${QUORVEL_GOOGLETEST_SOURCES}/CMakeLists.txt")
  message(FATAL_ERROR "${QUORVEL_GOOGLETEST_SOURCES} is missing. Cure: apt-get install googletest")
endif()
set(INSTALL_GTEST OFF)
set(BUILD_GMOCK ON)
# Its build description is older than the rule that options leave set variables alone.
set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)
add_subdirectory("${QUORVEL_GOOGLETEST_SOURCES}" "${CMAKE_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)

# Debian's own Python first: only that one sees the Python packages that scripts/setup installs.
find_program(QUORVEL_PYTHON NAMES python3 HINTS /usr/bin REQUIRED)

# Three limits, the inner first: the watchdog of the test program knows what hangs, run-in-wine ends a program whose
# watchdog hangs too, ctest ends run-in-wine.
set(QUORVEL_WATCHDOG_SECONDS 60)
set(QUORVEL_PROGRAM_SECONDS 90)
set(QUORVEL_CTEST_SECONDS 120)

# Before a Windows program in the COMMAND of add_test: QUORVEL_RUN takes the program's exit code for the verdict,
# QUORVEL_RUN_TESTS asks for GoogleTest's own word as well. Empty on Windows.
if(CMAKE_CROSSCOMPILING)
  set(QUORVEL_RUN "${CMAKE_SOURCE_DIR}/scripts/run-in-wine" --time-limit ${QUORVEL_PROGRAM_SECONDS})
  set(QUORVEL_RUN_TESTS ${QUORVEL_RUN} --expect-passed)
endif()

# quorvel_add_test_program(<name> SOURCES <file>... LIBRARIES <target>...): a program of GoogleTest cases, with the
# project's main and log recorder, which ctest does not know of yet.
function(quorvel_add_test_program name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES")
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/src" "${CMAKE_SOURCE_DIR}/tests")
  target_link_libraries(${name} PRIVATE quorvel_test_main ${arg_LIBRARIES})
  set_target_properties(${name} PROPERTIES
    RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests"
    CROSSCOMPILING_EMULATOR "${QUORVEL_RUN_TESTS}")
  target_precompile_headers(${name} REUSE_FROM quorvel_test_headers)
  quorvel_warnings(${name})
endfunction()

# quorvel_add_unit_tests(<name> SOURCES <file>... LIBRARIES <target>... [SERIAL]): every case of the program becomes a
# test of ctest, so each runs in a process of its own and finds the process-wide state untouched.
# SERIAL: the cases open windows, start processes or write files that others look for; never two of these at a time.
function(quorvel_add_unit_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "SERIAL" "" "SOURCES;LIBRARIES")
  quorvel_add_test_program(${name} SOURCES ${arg_SOURCES} LIBRARIES ${arg_LIBRARIES})
  set(properties TIMEOUT ${QUORVEL_CTEST_SECONDS} LABELS ${name})
  if(arg_SERIAL)
    list(APPEND properties RESOURCE_LOCK desktop)
  endif()
  gtest_discover_tests(${name}
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 120
    NO_PRETTY_VALUES  # the names of the cases, not the bytes of their parameters
    PROPERTIES ${properties})
endfunction()
