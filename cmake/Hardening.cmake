# What makes the plug-in's file hard to misuse, said aloud even where it is a tool's default, so that no other tool and no
# other version takes it away. tests/artifact/plugin_file_test.py reads it off the built file; docs/security.md says what
# it is good for, and what GCC and ld cannot do.
set(QUORVEL_HARDENED_COMPILING)
set(QUORVEL_HARDENED_LINKING)
if(MSVC)
  # /GS: a function with a buffer ends the process when its frame was overrun. /guard:cf: calls through a pointer go
  # only where a function begins. /CETCOMPAT: the processor may keep its own copy of the return addresses.
  list(APPEND QUORVEL_HARDENED_COMPILING $<$<COMPILE_LANGUAGE:C,CXX>:/GS$<SEMICOLON>/guard:cf>)
  list(APPEND QUORVEL_HARDENED_LINKING /DYNAMICBASE /HIGHENTROPYVA /NXCOMPAT /GUARD:CF /CETCOMPAT /BASE:0x180000000)
else()
  # -fstack-protector-strong is GCC's /GS; src/support/StackGuardGnu.cpp holds the value that is compared.
  # _FORTIFY_SOURCE: calls of the C library that write into a buffer of known size check it; needs an optimising compiler.
  list(APPEND QUORVEL_HARDENED_COMPILING
    $<$<COMPILE_LANGUAGE:C,CXX>:-fstack-protector-strong>
    $<$<AND:$<COMPILE_LANGUAGE:C,CXX>,$<NOT:$<CONFIG:Debug>>>:-D_FORTIFY_SOURCE=2>)
  # --dynamicbase, --high-entropy-va: Windows places the file anywhere in the address space, at another place after each
  # start of the machine. --nxcompat: data is not executed. --image-base: above 4 GiB, so that an address that was cut to
  # 32 bits points at nothing, and the same for whoever builds the file.
  list(APPEND QUORVEL_HARDENED_LINKING
    -Wl,--dynamicbase,--high-entropy-va,--nxcompat,--image-base,0x180000000)
endif()
