// Regular slices of the host's main thread for the PluginCore.
// Thread: main.
#pragma once

#include <cstdint>

#include "host/Messages.h"

// Adds the idle timer, which calls on every idle tick of the host, and keeps its handle in the globals block. Returns
// the host's code; a refusal is logged.
std::int32_t AddTimers(SPInterfaceMessage* message);

// Stops the idle timer; does nothing for one that was not added or is stopped. It is not deleted, and nothing starts it
// again. Returns the host's code; a refusal is logged.
std::int32_t RemoveTimers();

// One tick of the timer: asks the PluginCore every ten seconds whether it is still enabled and stops the timer if not,
// keeps trying to reach the panel, and lets the PluginCore work. Does nothing without a globals block. Always 0; throws
// ForeignException when the PluginCore throws.
std::int32_t HandleIdleTick();
