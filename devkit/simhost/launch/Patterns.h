// Wildcards: "*" stands for any characters, "?" for one. The program expands them itself, for the shells of Windows do
// not.
#pragma once

#include <string_view>

namespace simhost {

bool HasWildcards(std::string_view text);
// Upper and lower case are the same, as in file names.
bool MatchesPattern(std::string_view text, std::string_view pattern);

}  // namespace simhost
