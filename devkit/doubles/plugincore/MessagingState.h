// Thread: main.
#pragma once

#include <optional>
#include <string>

#include "plugincore/PluginCore.h"

// What RegisterPlugPlug is given: the fields that are set, in their order, as in "module, load, unload, add, remove,
// dispatch". A function that is not the one that the module exports under the field's name is followed by a question
// mark. Nothing for a null pointer.
std::optional<std::string> DescribeMessagingState(const PlugPlugState* state);
