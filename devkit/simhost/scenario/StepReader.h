#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "simhost/scenario/Step.h"

namespace simhost {

// Throws ScenarioError.
std::vector<Step> ReadSteps(const nlohmann::ordered_json& value, const std::string& place);

}  // namespace simhost
