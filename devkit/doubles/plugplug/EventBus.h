// The event bus of one process: who listens to what. An event is delivered at once, to every listener of its type, in
// the order in which they were added.
//
// Thread: main.
#pragma once

#include <cstdint>

#include "plugincore/PluginCore.h"

namespace plugplug {

// What the bus answers to what makes no sense: an event without a type, a listener without a type or a function, a
// listener to be removed that is not there.
constexpr std::int32_t kRefused = 22;

std::int32_t AddListener(const char* type, PlugPlugListener listener, void* context);
std::int32_t RemoveListener(const char* type, PlugPlugListener listener, void* context);

// As at the beginning: nobody listens.
void RemoveAllListeners();

// 0 for an event that can be dispatched.
std::int32_t Check(const PlugPlugEvent* event);

// Listeners see a copy that belongs to the bus and ends with the call. A type that nobody listens to is no mistake.
std::int32_t Dispatch(const PlugPlugEvent* event);

}  // namespace plugplug
