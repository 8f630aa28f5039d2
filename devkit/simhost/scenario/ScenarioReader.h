#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "simhost/scenario/Scenario.h"

namespace simhost {

// Reads a story in which the defaults are written out; see ScenarioFile. `workFolder` is the folder of the run.
// Throws ScenarioError, which names the place, for anything that is not understood.
Scenario ReadScenario(const nlohmann::ordered_json& story, const std::string& place, const std::string& workFolder);

}  // namespace simhost
