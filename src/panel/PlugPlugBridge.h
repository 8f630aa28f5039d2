// The host's panel-messaging library, loaded from the host's own folder and bound by name. Failures are silent: the
// caller tries again later.
// Thread: main.
#pragma once

#include <windows.h>

#include <cstdint>

#include "plugincore/PluginCore.h"

namespace PlugPlugBridge {

constexpr std::int32_t kNotBound = 1;
constexpr std::int32_t kLibraryFailed = 31;

// Loads "PlugPlugOwl.dll", or else "PlugPlug.dll", from the folder of the host's program and binds its functions.
// Returns 0, or kLibraryFailed when the library cannot be loaded (the module becomes null) or lacks a function: then it
// stays loaded, the function becomes null, and the fields behind it are left as they were. Every call loads the library
// once more.
std::int32_t Load(PlugPlugState& state);

// Frees the library and clears its field; 0 also when there is none, kLibraryFailed when Windows refuses. Nothing calls
// it: it completes the bridge for a front end that ends the messaging before the process does.
std::int32_t Unload(PlugPlugState& state);

// The library's result, or kNotBound. `handler` and `context` have to live as long as the library. Throws
// ForeignException when the library throws.
std::int32_t AddEventListener(const PlugPlugState& state, const char* eventType, PlugPlugListener handler,
                              void* context);

// The library's result, or kNotBound. Throws ForeignException when the library throws.
std::int32_t DispatchEvent(const PlugPlugState& state, const PlugPlugEvent& event);

}  // namespace PlugPlugBridge
