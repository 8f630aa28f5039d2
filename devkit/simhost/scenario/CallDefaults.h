// What the plug-in always passes to the PluginCore and the messaging library: expected calls name only the rest.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "simhost/scenario/CallTable.h"
#include "simhost/scenario/Place.h"

namespace simhost {

// An expected call with all arguments: {"GetMenus": {"path": ""}} gets the capacity that the contract gives the buffer,
// and that it is zeroed. A name alone stands for the call with nothing but defaults. An argument that is written wins;
// one that is a JSON value where the call has a text becomes its compact text. What is neither a name nor an object
// with one member is left as it is.
nlohmann::ordered_json FullCall(const nlohmann::ordered_json& call);

// Complains about what is no call of that library, about unknown arguments and numbers that cannot be.
void CheckCall(const nlohmann::ordered_json& call, Library library, const Place& place);

// Complains, in a script of answers, about unknown functions, unknown keys and numbers that cannot be.
void CheckAnswers(const nlohmann::ordered_json& answers, Library library, const Place& place);

}  // namespace simhost
