// Thread: main.
#pragma once

#include <cstdint>

#include "host/Messages.h"

// The module's one export: the host calls it with every message, on its main thread. Returns the host's error code, 0
// for success, 1 for a message that is refused. No exception leaves it.
extern "C" std::int32_t PluginMain(const char* caller, const char* selector, SPMessageData* message);
