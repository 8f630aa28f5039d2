# Which suites and cases a source holds, read from its text when the build is configured: no test program has to be
# started to list them. Sources that change are read again.

# quorvel_read_cases(<variable> <source>...): the cases as "Suite.Case", without those that a macro of the source's own
# declares. A program whose suites are not all found refuses to run (tests/support/main/TestMain.cpp).
function(quorvel_read_cases variable)
  set(cases)
  foreach(source IN LISTS ARGN)
    get_filename_component(source "${source}" ABSOLUTE)
    if(NOT source MATCHES "\\.cpp$")
      continue()
    endif()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${source}")
    file(READ "${source}" text)
    string(REGEX MATCHALL "\nTEST(_F|_P)?\\([ \n]*[A-Za-z0-9_]+,[ \n]*[A-Za-z0-9_]+" declarations "${text}")
    foreach(declaration IN LISTS declarations)
      string(REGEX REPLACE "\nTEST(_F|_P)?\\([ \n]*([A-Za-z0-9_]+),[ \n]*([A-Za-z0-9_]+)" "\\2.\\3" case
        "${declaration}")
      list(APPEND cases ${case})
    endforeach()
  endforeach()
  set(${variable} ${cases} PARENT_SCOPE)
endfunction()

# quorvel_suites_of(<variable> <case>...): their suites, each once.
function(quorvel_suites_of variable)
  list(TRANSFORM ARGN REPLACE "\\..*" "" OUTPUT_VARIABLE suites)
  list(REMOVE_DUPLICATES suites)
  set(${variable} ${suites} PARENT_SCOPE)
endfunction()
