// Unloads at its end what the test has loaded under the PluginCore's file name: the plug-in never does, and a library
// that is in memory is what Windows finds first for a bare name.
#pragma once

#include <windows.h>

class LoadedPluginCores {
  public:
    LoadedPluginCores() = default;
    LoadedPluginCores(const LoadedPluginCores&) = delete;
    LoadedPluginCores& operator=(const LoadedPluginCores&) = delete;
    ~LoadedPluginCores() {
        while (const HMODULE module = GetModuleHandleW(L"PluginCoreX64.dll")) {
            FreeLibrary(module);
        }
    }
};
