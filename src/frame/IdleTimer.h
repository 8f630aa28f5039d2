// Regular slices of the host's main thread for the PluginCore. Main thread only.
#pragma once

#include <cstdint>

#include "host/Messages.h"

// Starts the idle timer; the host's code.
// A gap so far: starts nothing.
std::int32_t AddTimers(SPInterfaceMessage* message);

// Stops the idle timer; the host's code.
// A gap so far: stops nothing.
std::int32_t RemoveTimers();

// One tick of the timer; always 0.
// A gap so far: does nothing.
std::int32_t HandleIdleTick();
