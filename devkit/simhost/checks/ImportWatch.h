// Listens to a few Windows calls of the plug-in by changing the import table of the loaded file; the calls go on to
// Windows. For what cannot be seen from outside: the style that a message box was asked for with, whether a message
// hook was taken out again, and which messaging library the plug-in itself loads: the panel loads one as well.
//
// Thread: main.
#pragma once

#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <vector>

namespace simhost {

// For the loaded module, until it is unloaded. What was seen of a former one is forgotten.
void WatchImports(HMODULE module);

// The styles of the message boxes since the last call, in order.
std::vector<std::uint32_t> TakeBoxStyles();

struct MessagingLoad {
    std::filesystem::path file;
    bool succeeded;
};

// The plug-in's attempts to load a messaging library since the last call, in order.
std::vector<MessagingLoad> TakeMessagingLoads();
// The one that it loaded last; empty when it loaded none.
std::filesystem::path MessagingLibraryOfPlugin();

// Hooks put in and not taken out.
std::int64_t HooksInPlace();

}  // namespace simhost
