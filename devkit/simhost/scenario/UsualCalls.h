// The lists of calls that `{"usual": name}` stands for. They are part of the program, so they are the same wherever a
// scenario lies.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace simhost {

// By name. "${plugin}" stands for the plug-in's file. A list may name others.
const nlohmann::ordered_json& UsualLists();
std::vector<std::string> NamesOfUsualLists();

}  // namespace simhost
