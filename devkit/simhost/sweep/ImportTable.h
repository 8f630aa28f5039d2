// Every function that the plug-in imports: how it fails as its maker documents it, or why it cannot fail.
//
// Thread: main.
#pragma once

#include <windows.h>

#include <span>

namespace simhost::sweep {

struct ImportRow {
    const char* name;
    const char* cannotFail;  // why; null for one that can
    void (*substitute)(
        HMODULE module);  // puts the counting and failing function in its place; null for one that cannot
};

std::span<const ImportRow> ImportTable();

// In the loaded module, until it is unloaded. On top of whoever has replaced its imports before. A module need not
// import all of the table.
//
// What the C runtime calls while the module is being loaded has happened by then, and did not fail: the block of its
// table of functions for the end, the critical sections, the thread variables, VirtualQuery and VirtualProtect on the
// module's own pages.
void SubstituteImports(HMODULE module);

// Takes the hooks out that are still in: code that is unloaded must not be called.
void RemoveHooksLeft();
// Once the plug-in is unloaded, closes what it has left open: the next run replaces the files.
void CloseHandlesLeft();

}  // namespace simhost::sweep
