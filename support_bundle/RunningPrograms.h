// The programs that a report is about: the host, whatever has loaded the plug-in, and the core application.
#pragma once

#include <windows.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

struct LoadedModule {
    std::filesystem::path path;
    std::uint64_t base;
    std::uint64_t size;
};

struct RunningProgram {
    DWORD process = 0;
    std::wstring name;                  // of its file
    std::vector<LoadedModule> modules;  // in the order in which they were loaded, the program itself first; empty when
                                        // Windows does not let us see them
};

// In the order of their process numbers. `further` are processes that are wanted whatever they are; such as are not
// there are left out.
std::vector<RunningProgram> FindRunningPrograms(const std::vector<DWORD>& further);

// The first module of that name, whatever the case; null when there is none.
const LoadedModule* FindModule(const RunningProgram& program, const std::wstring& name);
// Whether it is the core application, beside which the plug-in looks for the PluginCore.
bool IsCoreApplication(const RunningProgram& program);
// The plug-in, shipped or diagnostic.
const LoadedModule* FindPlugin(const RunningProgram& program);
