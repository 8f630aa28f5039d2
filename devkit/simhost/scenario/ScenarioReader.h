#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "simhost/scenario/Scenario.h"

namespace simhost {

// What "${name}" in a scenario's texts stands for. "${name:json}" is the same as it appears inside a JSON text.
using Placeholders = std::map<std::string, std::string>;

// Throws ScenarioError, which names file and place, for anything that is not understood.
Scenario ReadScenario(const std::filesystem::path& file, const Placeholders& placeholders);

}  // namespace simhost
