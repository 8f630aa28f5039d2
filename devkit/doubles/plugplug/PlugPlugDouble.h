// The double of the host's messaging library: a bus that records each call of the plug-in and answers from its script.
// See doubles/common/LibraryDouble.h.
//
// Thread: main.
#pragma once

#include "doubles/common/LibraryDouble.h"
#include "plugincore/PluginCore.h"

struct PlugPlugDouble : doubles::LibraryDouble {
    PlugPlugDouble();

    // What PlugPlugAddEventListener was given last, whatever it answered.
    PlugPlugListener listener = nullptr;
    void* context = nullptr;
    // The text of the event dispatched last: the address that it came with, not a copy.
    const char* lastData = nullptr;
};

// The one that the functions use; made at the first use.
PlugPlugDouble& ThePlugPlug();
