// The suites of this program that the build has told ctest; defined in a file that the build writes for each program.
#pragma once

#include <string_view>
#include <vector>

extern const std::vector<std::string_view> kRegisteredSuites;
