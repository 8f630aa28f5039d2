// Finding the PluginCore library: beside the running core application, through the launch-info file that the core
// application leaves behind, or by leaving the choice to Windows.
// Thread: main.
#pragma once

#include <string>

constexpr const char* kPluginCoreFileName = "PluginCoreX64.dll";

// The path to load the library from. Nothing is tested but whether the library lies directly in the folder found; the
// bare file name when no folder was found.
std::string FindPluginCorePath();

// True only for an existing regular file. `path` is in the ANSI code page.
bool IsRegularFile(const std::string& path);
