// A host with as little behind it as the plug-in can be started with: its suites answer at once, its menu has as many
// items as were added, and there is no document. What the plug-in does beside it is what a message costs.
// Thread: main.
#pragma once

#include <cstddef>

#include "host/Messages.h"

namespace bench {

// The block that comes with a message of this host.
SPMessageData BareMessage(void* globals);

// Items have the handles 1, 2, 3 and so on, in the order in which they were added; their texts are "t1", "t2", "t3".
AIMenuItemHandle BareItem(std::size_t number);

// Takes all items away.
void EmptyBareMenu();

}  // namespace bench
