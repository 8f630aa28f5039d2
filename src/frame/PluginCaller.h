#pragma once

#include <cstdint>

#include "host/Messages.h"

// Routes a message of any caller but "SP Interface" to the operation that owns it; its result.
// Thread: main.
std::int32_t HandlePluginCaller(const char* caller, const char* selector, SPMessageData* message);
