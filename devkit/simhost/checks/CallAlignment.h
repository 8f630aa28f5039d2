// Finds which recorded call belongs to which expected one, so that one call too many does not make all later ones look
// wrong.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "simhost/checks/PluginCoreCalls.h"

namespace simhost {

// What differs, for people, call by call. Empty when the calls are exactly the expected ones.
std::vector<std::string> LinesOfCallDifference(const nlohmann::ordered_json& expected,
                                               const std::vector<PluginCoreCall>& calls);

}  // namespace simhost
