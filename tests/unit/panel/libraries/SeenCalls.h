// What a library for the tests of the bridge was given last, in its own memory.
#pragma once

#include "host/PlugPlug.h"

struct SeenCalls {
    const char* type;
    PlugPlugListener listener;
    void* context;
    const PlugPlugEvent* event;
};

constexpr std::int32_t kAnswerToAdding = 41;
constexpr std::int32_t kAnswerToDispatching = 43;

// Exported under this name by every library that has all functions.
using SeenCallsFunction = const SeenCalls* (*)();
