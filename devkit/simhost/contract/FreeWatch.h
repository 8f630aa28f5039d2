// Notes when a library frees, or has moved, memory that is its caller's: of guarded memory nothing is done, all else
// goes on to the function that the library meant.
//
// Thread: main. The library's calls may come from any thread.
#pragma once

#include <windows.h>

namespace simhost::contract {

// For the loaded library, for good.
void WatchFrees(HMODULE library);

}  // namespace simhost::contract
