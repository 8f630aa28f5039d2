// Listens to a few Windows calls of the plug-in by changing the import table of the loaded file; the calls go on to
// Windows. For what cannot be seen from outside: the style that a message box was asked for with, and whether a
// message hook was taken out again.
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

namespace simhost {

// For the loaded module, until it is unloaded. Main thread only.
void WatchImports(HMODULE module);

// The styles of the message boxes since the last call, in order.
std::vector<std::uint32_t> TakeBoxStyles();

// Hooks put in and not taken out.
std::int64_t HooksInPlace();

}  // namespace simhost
