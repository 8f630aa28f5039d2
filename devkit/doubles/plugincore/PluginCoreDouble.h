// The double of the PluginCore: it records each call and answers from its script. See doubles/common/LibraryDouble.h.
//
// Thread: main.
#pragma once

#include "doubles/common/LibraryDouble.h"
#include "doubles/plugincore/MenuCreation.h"

struct PluginCoreDouble : doubles::LibraryDouble {
    PluginCoreDouble();

    // What the entries were given last besides texts and numbers; null before.
    PluginCoreMenuCallback menuCallback = nullptr;
    void* menuContext = nullptr;
    PlugPlugState* plugPlug = nullptr;
};

// The one that the entries use; made at the first use.
PluginCoreDouble& ThePluginCore();
