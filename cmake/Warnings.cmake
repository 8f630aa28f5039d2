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

# For targets with precompiled headers. GCC 12 forgets that what comes out of one is the library's: it then warns about
# std::string's own buffer. The same sources give no such warning without the precompiled header.
function(quorvel_accept_precompiled_headers target)
  if(NOT MSVC)
    target_compile_options(${target} PRIVATE -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
  endif()
endfunction()
