# zlib, linked statically into what is not the plug-in: Debian's build for the cross compiler, or, with Visual C++, the one
# that CMake finds (-DZLIB_ROOT=...).
if(CMAKE_CROSSCOMPILING)
  find_path(QUORVEL_ZLIB_INCLUDE zlib.h)
  find_library(QUORVEL_ZLIB_LIBRARY libz.a)
  if(NOT QUORVEL_ZLIB_INCLUDE OR NOT QUORVEL_ZLIB_LIBRARY)
    message(FATAL_ERROR "zlib for MinGW-w64 is missing. Cure: apt-get install libz-mingw-w64-dev")
  endif()
  add_library(quorvel_zlib INTERFACE)
  # In the compiler's own folder of headers: naming it would only change the order in which they are found.
  target_link_libraries(quorvel_zlib INTERFACE "${QUORVEL_ZLIB_LIBRARY}")
else()
  set(ZLIB_USE_STATIC_LIBS ON)
  find_package(ZLIB REQUIRED)
  add_library(quorvel_zlib ALIAS ZLIB::ZLIB)
endif()
