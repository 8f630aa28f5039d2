# Libraries of one set of objects that differ in what they export.

# quorvel_write_export_list(<file> <export>...): a module definition file; an export is a name, or "name = symbol".
function(quorvel_write_export_list file)
  string(REPLACE ";" "\n    " list "${ARGN}")
  file(CONFIGURE OUTPUT "${file}" CONTENT "EXPORTS\n    @list@\n" @ONLY)
endfunction()

# quorvel_export_from_program(<object library> <file> <export>...): programs that link the objects export the names, so
# that they can be loaded as the library. <file> is where the list is written.
function(quorvel_export_from_program objects file)
  if(MSVC)
    foreach(export IN LISTS ARGN)
      string(REPLACE " " "" option "/EXPORT:${export}")
      target_link_options(${objects} INTERFACE "${option}")
    endforeach()
  else()
    quorvel_write_export_list("${file}" ${ARGN})
    target_link_options(${objects} INTERFACE "${file}")
  endif()
endfunction()

# quorvel_add_library_double(<target> <file name> <object library> <export list> [<version resource>])
# Without debug information, because there are many of them.
function(quorvel_add_library_double target name objects exports)
  add_library(${target} SHARED $<TARGET_OBJECTS:${objects}> ${exports} ${ARGN})
  target_link_libraries(${target} PRIVATE doubles_common)
  set_target_properties(${target} PROPERTIES OUTPUT_NAME ${name} PREFIX "" SUFFIX ".dll" LINKER_LANGUAGE CXX)
  if(NOT MSVC)
    target_link_options(${target} PRIVATE -s)
  endif()
  quorvel_warnings(${target})
  install(TARGETS ${target} RUNTIME DESTINATION bin COMPONENT kit)
endfunction()
