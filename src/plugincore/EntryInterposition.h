// What the entries of the PluginCore are bound to. Each binary links exactly one definition: the shipped plug-in and
// the tests the one that leaves the library's functions as they are, so that a call costs nothing more; the diagnostic
// plug-in the one that puts a function in between, which logs each call.
#pragma once

#include <windows.h>

// What is called for the entry `name`, which lies at `address` in the library; null when `address` is null: a missing
// entry stays missing.
// Thread: main.
FARPROC InterposeEntry(HMODULE library, const char* name, FARPROC address) noexcept;
