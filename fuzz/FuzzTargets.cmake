# The fuzz targets and what they are made of, for the fuzzers (native) and for the corpora played again (Windows).
# Paths are relative to the project's folder.

set(QUORVEL_FUZZ_TARGETS json json-units report menu launch-info words settings)

set(QUORVEL_FUZZ_SOURCES
  fuzz/reference/JsonTrees.cpp
  fuzz/reference/StrictJson.cpp
  fuzz/reference/Text.cpp
  fuzz/targets/Json.cpp
  fuzz/targets/JsonUnits.cpp
  fuzz/targets/LaunchInfo.cpp
  fuzz/targets/Menu.cpp
  fuzz/targets/Report.cpp
  fuzz/targets/Settings.cpp
  fuzz/targets/Words.cpp)
