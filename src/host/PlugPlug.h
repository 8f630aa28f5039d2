// PlugPlug, the host's panel-messaging library: plain C functions, exported by the names of their types below. Results
// are 32-bit, 0 for success.
// Thread: main.
#pragma once

#include <cstdint>

// Texts belong to the caller that dispatches the event. How long the library reads them is not documented: keep them.
struct PlugPlugEvent {
    const char* type;
    std::int32_t scope;
    const char* applicationID;
    const char* extensionID;  // may be null
    const char* data;
};

constexpr std::int32_t kPlugPlugApplicationScope = 1;

// Called by the library, on the main thread, for each event of the type that was listened to.
using PlugPlugListener = void (*)(const PlugPlugEvent* event, void* context);

using PlugPlugLoadExtension = std::int32_t (*)(const char* extensionID);
using PlugPlugUnloadExtension = std::int32_t (*)(const char* extensionID);
using PlugPlugAddEventListener = std::int32_t (*)(const char* type, PlugPlugListener listener, void* context);
using PlugPlugRemoveEventListener = std::int32_t (*)(const char* type, PlugPlugListener listener, void* context);
using PlugPlugDispatchEvent = std::int32_t (*)(const PlugPlugEvent* event);
