// The font manager's commands in the host's menus. Main thread only.
#pragma once

#include <cstdint>

#include "host/Messages.h"

// Adds the menu items that the PluginCore describes; 0 for success.
// A gap so far: adds nothing.
std::int32_t AddAllQuorvelMenuItems(SPInterfaceMessage* message);

// Reports the chosen item to the PluginCore; always 0.
// A gap so far: reports nothing.
std::int32_t GoMenuItem(AIMenuMessage* message);

// Refreshes the enabled and checked marks of the items; always 0.
// A gap so far: refreshes nothing.
std::int32_t updateMenuItem(AIMenuMessage* message);
