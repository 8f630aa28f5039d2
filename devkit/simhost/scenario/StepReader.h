#pragma once

#include <nlohmann/json.hpp>
#include <vector>

#include "simhost/scenario/Place.h"
#include "simhost/scenario/Step.h"

namespace simhost {

// Complains at the places of the steps. A step of an unknown verb has none: nobody can play it.
std::vector<Step> ReadSteps(const nlohmann::ordered_json& value, const Place& place);

}  // namespace simhost
