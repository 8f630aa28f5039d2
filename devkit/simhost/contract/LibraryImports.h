// Listens to a few Windows calls of a PluginCore by changing the import table of the loaded file: what it frees, and
// what it makes and must take away again. The calls go on to Windows. What the library has done while it was loaded, or
// does by other libraries of its own, is not seen.
//
// Thread: WatchLibrary and Leftovers: main. The library's calls may come from any thread.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

#include "simhost/contract/Clauses.h"

namespace simhost::contract {

// For the loaded library, for good.
void WatchLibrary(HMODULE library);

struct Leftover {
    ClauseId clause;
    std::string what;
};

// What was made and is still there: hooks, windows, threads, processes. Threads and processes that are just ending get
// a moment to do so.
std::vector<Leftover> Leftovers();

}  // namespace simhost::contract
