// The texts of the items that can ever be in the menu, as far as a story tells them.
#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>

namespace simhost {

// Those that the host has itself, and those that the PluginCore's answers to GetMenus describe. Nothing when the story
// does not tell the latter, or not in JSON. `story` has its defaults written out.
std::optional<std::set<std::string>> MenuTextsOf(const nlohmann::ordered_json& story);

}  // namespace simhost
