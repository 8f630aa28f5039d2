// What a scenario need not write: its beginning, its end, and the usual calls.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace simhost {

// Writes the defaults into one story whose values are filled in: "begin", "steps" and "end" are arrays of steps
// afterwards, all expected calls name all their arguments, and the texts of answers are texts.
// Throws ScenarioError.
void WriteDefaults(nlohmann::ordered_json& story, const std::string& place);

}  // namespace simhost
