# quorvel_warnings(<target>...): the project's warnings, for our own sources only.
function(quorvel_warnings)
  foreach(target IN LISTS ARGN)
    if(MSVC)
      target_compile_options(${target} PRIVATE /W4 $<$<BOOL:${QUORVEL_WARNINGS_AS_ERRORS}>:/WX>)
    else()
      target_compile_options(${target} PRIVATE
        $<$<COMPILE_LANGUAGE:C,CXX>:-Wall;-Wextra;-Wpedantic;-Wconversion;-Wshadow>
        $<$<AND:$<COMPILE_LANGUAGE:C,CXX>,$<BOOL:${QUORVEL_WARNINGS_AS_ERRORS}>>:-Werror>)
    endif()
  endforeach()
endfunction()
