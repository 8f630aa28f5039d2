// Puts the layer between the plug-in and whatever PluginCore it loads: what the plug-in finds with GetProcAddress is a
// forwarding entry. The library's file, its version and the entries that it lacks remain its own.
//
// Thread: main.
#pragma once

#include <windows.h>

namespace simhost::contract {

// For the loaded plug-in, until it is unloaded.
void WatchPluginCore(HMODULE plugin);

// The library in which the plug-in has looked for entries last; null when in none.
HMODULE WatchedLibrary();

}  // namespace simhost::contract
