#include "frame/base/PluginGlobals.h"

#include <new>

PluginGlobals* sGlobals = nullptr;
SPMessageData* sCurrentMessage = nullptr;

void InitializeGlobals(PluginGlobals& globals, SPPluginRef plugin) {
    void* const firstUnused = globals.unused1;
    void* const secondUnused = globals.unused3;
    globals = PluginGlobals{};
    globals.unused1 = firstUnused;
    globals.unused3 = secondUnused;
    globals.plugin = plugin;
    globals.text = new (std::nothrow) std::string();
}
