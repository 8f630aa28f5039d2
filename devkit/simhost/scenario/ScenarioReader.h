#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "simhost/scenario/Place.h"
#include "simhost/scenario/Scenario.h"

namespace simhost {

// Reads a story in which the defaults are written out; see ScenarioFile. `workFolder` is the folder of the run.
// Complains at the place about everything that is not understood.
Scenario ReadScenario(const nlohmann::ordered_json& story, const Place& place, const std::string& workFolder);

}  // namespace simhost
