#pragma once

#include <cstdint>

#include "host/Messages.h"

// Handles a message of the caller "SP Interface": start-up, about and shut-down; its result, 0 for an unknown selector.
// Thread: main.
std::int32_t HandleInterfaceMessage(const char* selector, SPMessageData* message);
