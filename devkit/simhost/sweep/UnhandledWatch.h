// Hears when the plug-in stops an exception where a message enters: it formats the line "Unhandled exception ..." for
// its log, and nobody else sees that line.
//
// Thread: main.
#pragma once

#include <windows.h>

#include <cstdint>

namespace simhost::sweep {

// In the loaded module, until it is unloaded. On top of whoever has replaced its imports before.
void WatchUnhandled(HMODULE module);

// How often since the last call.
std::int64_t TakeUnhandled();

}  // namespace simhost::sweep
