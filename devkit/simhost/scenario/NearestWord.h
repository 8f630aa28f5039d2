// Finds the word that somebody may have meant.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace simhost {

// The known word that is nearest to the written one; empty when none is near. Letters that are left out, added, wrong
// or swapped count one each, upper and lower case nothing.
std::string NearestWord(std::string_view written, const std::vector<std::string>& known);

// `; did you mean "word"?`, or nothing.
std::string DidYouMean(std::string_view written, const std::vector<std::string>& known);

}  // namespace simhost
