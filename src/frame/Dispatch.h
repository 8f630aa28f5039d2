// From a message of the host to the operation that handles it.
// Thread: main.
#pragma once

#include <cstdint>

#include "host/Messages.h"

// Dispatches the message and returns its result. Any exception that a handler lets out, one of code built with another
// compiler included, is logged, and the result is then 0. A message that arrives while another is being handled is
// refused with 1.
std::int32_t DispatchGuarded(const char* caller, const char* selector, SPMessageData* message) noexcept;
