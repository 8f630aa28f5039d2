// Listens to a few Windows calls of a PluginCore by changing the import table of the loaded file: what it frees, and
// what it makes and must take away again. The calls go on to Windows. What the library has done while it was loaded, or
// does by other libraries of its own, is not seen.
//
// Thread: main. The library's calls may come from any thread.
#pragma once

#include <windows.h>

namespace simhost::contract {

// For the loaded library, for good.
void WatchLibrary(HMODULE library);

}  // namespace simhost::contract
