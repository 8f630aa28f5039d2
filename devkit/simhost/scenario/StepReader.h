// The parts of a scenario file that steps consist of.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "simhost/scenario/Scenario.h"

namespace simhost {

std::vector<Step> ReadSteps(const nlohmann::ordered_json& value, const std::string& place);
std::vector<FileToMake> ReadFiles(const nlohmann::ordered_json& array, const std::string& place);
std::vector<TextFrame> ReadFrames(const nlohmann::ordered_json& array, const std::string& place);

}  // namespace simhost
