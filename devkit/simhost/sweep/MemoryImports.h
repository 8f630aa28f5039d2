// The C runtime's memory as the plug-in takes it, and with it all of C++: each allocation counts, and can fail.
//
// Thread: any.
#pragma once

#include <windows.h>

namespace simhost::sweep {

// In the loaded module, until it is unloaded.
void SubstituteMalloc(HMODULE module);
void SubstituteCalloc(HMODULE module);
void SubstituteRealloc(HMODULE module);
void SubstituteFree(HMODULE module);

}  // namespace simhost::sweep
