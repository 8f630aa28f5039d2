# Lets CMake configure on Debian what the presets for Visual C++ configure on Windows, down to the options of each source.
# Nothing can be compiled so: what stands for the compiler only fails.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
# As on Windows, where the tests in Python are not registered and nothing runs under Wine.
set(CMAKE_CROSSCOMPILING FALSE)

# All that CMake would ask the compiler, answered as Visual Studio 2022 does.
foreach(language IN ITEMS C CXX)
  set(CMAKE_${language}_COMPILER "${QUORVEL_COMPILER_THAT_FAILS}")
  set(CMAKE_${language}_COMPILER_ID_RUN TRUE)
  set(CMAKE_${language}_COMPILER_ID MSVC)
  set(CMAKE_${language}_COMPILER_VERSION 19.38)
  set(CMAKE_${language}_PLATFORM_ID Windows)
  set(MSVC_${language}_ARCHITECTURE_ID x64)
  set(CMAKE_${language}_COMPILER_FORCED TRUE)
  set(CMAKE_${language}_SIZEOF_DATA_PTR 8)
  set(CMAKE_${language}_CL_SHOWINCLUDES_PREFIX "Note: including file: ")
endforeach()
set(CMAKE_SIZEOF_VOID_P 8)
set(CMAKE_C_STANDARD_COMPUTED_DEFAULT 11)
set(CMAKE_CXX_STANDARD_COMPUTED_DEFAULT 14)
foreach(standard IN ITEMS 98 11 14 17 20)
  list(APPEND CMAKE_CXX_COMPILE_FEATURES cxx_std_${standard})
endforeach()
foreach(tool IN ITEMS RC_COMPILER LINKER AR MT)
  set(CMAKE_${tool} "${QUORVEL_COMPILER_THAT_FAILS}")
endforeach()
# Reaches the little projects that CMake makes to try something out.
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QUORVEL_COMPILER_THAT_FAILS)
