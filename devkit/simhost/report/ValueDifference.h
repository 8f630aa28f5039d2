// Shows people where two values differ.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace simhost {

// Two lines for each place that differs, with the place in front where there is one to name:
//
//   at DocumentFonts[0].PostScriptName
//     expected  "Optima-Bold"
//     came      "Optima-Roman"
//
// Texts that hold JSON are compared member by member; of other texts that are long, a third line tells from which
// character on they differ. Empty when the values are the same.
std::vector<std::string> LinesOfDifference(const nlohmann::ordered_json& expected, const nlohmann::ordered_json& came);

}  // namespace simhost
