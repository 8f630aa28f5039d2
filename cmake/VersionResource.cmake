# quorvel_describe_program(<target> <description>): gives a program the version resource that all of ours have. Its file
# name must be set before.
function(quorvel_describe_program target FILE_DESCRIPTION)
  get_target_property(FILE_NAME ${target} OUTPUT_NAME)
  if(NOT FILE_NAME)
    set(FILE_NAME ${target})
  endif()
  set(resource "${CMAKE_CURRENT_BINARY_DIR}/${target}.rc")
  configure_file("${PROJECT_SOURCE_DIR}/cmake/VersionResource.rc.in" "${resource}" @ONLY)
  target_sources(${target} PRIVATE "${resource}")
endfunction()
