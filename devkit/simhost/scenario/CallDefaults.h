// What the plug-in always passes to the PluginCore and the messaging library: expected calls name only the rest.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace simhost {

// An expected call with all arguments: {"GetMenus": {"path": ""}} gets the capacity that the contract gives the buffer,
// and that it is zeroed. A name alone stands for the call with nothing but defaults. An argument that is written wins;
// one that is a JSON value where the call has a text becomes its compact text.
// Throws ScenarioError for what is neither a name nor an object with one member.
nlohmann::ordered_json FullCall(const nlohmann::ordered_json& call, const std::string& place);

}  // namespace simhost
