// Puts the layer between the plug-in and whatever PluginCore it loads: what the plug-in finds with GetProcAddress is a
// forwarding entry. The library's file, its version and the entries that it lacks remain its own.
//
// Thread: main.
#pragma once

#include <windows.h>

namespace simhost::contract {

// When it names a file, the contract's book is kept there, dialogs are closed, and the time limit of
// a step is that of a call: however many of them a step makes, a library may be slow.
constexpr const wchar_t* kContractRecordVariable = L"QUORVEL_CONTRACT_RECORD";
void KeepBookIfAsked();

// Names the library of one's own that was laid out as PluginCoreX64.dll.
constexpr const wchar_t* kPluginCoreFileVariable = L"QUORVEL_PLUGINCORE_FILE";

// For the loaded plug-in, until it is unloaded.
void WatchPluginCore(HMODULE plugin);

// The library's entry of that name behind the layer; null when it has none. Any other exported name as it is.
FARPROC GuardedEntry(HMODULE library, const char* name);

// The library in which the plug-in has looked for entries last; null when in none.
HMODULE WatchedLibrary();

// The plug-in is to be played to once more: nothing was called and found so far. The library stays the watched one.
void ForgetRun();

// The library is unloaded, and so is the plug-in: the process begins anew, as if it had watched none.
void ForgetLibrary();

// Whether a library of one's own is to be played with, and that one is watched: a scenario may lay out others.
bool IsOwnLibraryAsked();
bool IsOwnLibraryWatched();

}  // namespace simhost::contract
