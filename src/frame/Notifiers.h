// The notifications that the plug-in asks the host for, and their way to the handlers.
// Thread: main.
#pragma once

#include <cstdint>

#include "host/Messages.h"

// Registers the plug-in for its eleven notifications; the globals block must exist. Stops at the first one that the
// host refuses; those before it stay. Returns the host's code, kBadParameterErr for a null message.
std::int32_t AddNotifiers(SPInterfaceMessage* message);

// Calls the handler of the notifier that fired; its result, 0 for a notifier without one, kBadParameterErr for a null
// message.
std::int32_t GoNotifier(AINotifierMessage* message);
