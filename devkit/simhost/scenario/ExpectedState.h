// The part of a scenario file that tells what the plug-in must have left in the host.
#pragma once

#include <nlohmann/json.hpp>

#include "simhost/scenario/ObjectReader.h"

namespace simhost {

// What a step expects, by kind, in the form that PresentState gives: members that the scenario leaves out are filled in
// as they usually are. Throws ScenarioError.
nlohmann::ordered_json ReadExpectedState(ObjectReader& step);

}  // namespace simhost
