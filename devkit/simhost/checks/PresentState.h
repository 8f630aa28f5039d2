// What the plug-in has left in the host: menu, timers, file formats, and the messages that it sent to other plug-ins.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace simhost {

// By kind: "menu", "timers", "file_formats", "messages".
nlohmann::ordered_json PresentState();

// In words the first thing that differs; empty when all kinds that are expected are present exactly.
std::string DifferenceOfStates(const nlohmann::ordered_json& expected, const nlohmann::ordered_json& present);

// A menu for a person, one line per group and item.
std::vector<std::string> MenuLines(const nlohmann::ordered_json& groups);

}  // namespace simhost
