// The part of a scenario file that tells what the host has.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "simhost/scenario/Scenario.h"

namespace simhost {

// Throws ScenarioError.
void ReadHost(const nlohmann::ordered_json& value, const std::string& place, Scenario& scenario);

}  // namespace simhost
