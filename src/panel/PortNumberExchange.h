// Tells the font manager's panel on which local port the PluginCore listens. The panel asks over the host's event bus;
// it is also told once unasked, when the plug-in begins to listen. Failures are silent.
// Thread: main.
#pragma once

#include <cstdint>

// Loads the messaging library, listens for the panel's request and hands the bus to the PluginCore. Always 0, and
// throws nothing. To be called until it has succeeded once, and harmless ever after: the listener stays for good.
std::int32_t RegisterPortNumberListener();

// Sends the port to the panels; sends nothing while the PluginCore has none. May throw what calls into the PluginCore
// and the library throw.
void SendPortNumberResponse();
