# What every binary of the project is built with, whichever compiler builds it.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT WIN32)
  message(FATAL_ERROR "The plug-in is a 64-bit Windows library. Configure with one of the presets "
                      "(cmake --preset release) so that the cross compiler is used.")
endif()
if(NOT CMAKE_SIZEOF_VOID_P EQUAL 8)
  message(FATAL_ERROR "The host's interface is 64-bit only; this compiler builds for another size.")
endif()

# Windows 10 is the oldest system that the host runs on; the narrow or wide form of a Windows call is always named.
add_compile_definitions(WINVER=0x0A00 _WIN32_WINNT=0x0A00 WIN32_LEAN_AND_MEAN NOMINMAX)

if(MSVC)
  add_compile_definitions(_CRT_SECURE_NO_WARNINGS)
  add_compile_options(/utf-8 /EHsc /permissive-)
  # The plug-in needs no runtime library beside it. The tests patch their own imports of the C runtime, so they need it
  # as a DLL: the preset msvc-tests says so.
  if(NOT DEFINED CMAKE_MSVC_RUNTIME_LIBRARY)
    set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
  endif()
else()
  # One frame has to be written out in assembler; Visual C++ has a word for it.
  enable_language(ASM)
  # -static: no compiler runtime library has to be shipped beside a binary.
  # -fstack-protector-strong: the compiler's library of guarded calls, for whatever links the plug-in's code.
  # DWARF 4 is the newest form of which Wine's debugger reads names.
  # The prefix map keeps folder names of the building machine out of the binaries, --no-insert-timestamp the time.
  add_compile_options(-gdwarf-4 "-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.")
  add_link_options(-static -fstack-protector-strong -Wl,--no-insert-timestamp)
endif()
