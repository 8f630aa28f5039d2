// Loading the plug-in's file, beside an empty library; with and without a start-up and a shut-down. And the search for
// a running font manager that finds none, which is repeated until there is one.
#include <windows.h>
// After windows.h, which it needs.
#include <tlhelp32.h>

#include <string>

#include "common/Run.h"
#include "plugincore/RunningProcess.h"
#include "shipped/ShippedPlugin.h"

namespace {

void SearchInVain() {
    std::string folder;
    bench::Keep(GetPathToRunningProcessExe("NobodyIsCalledThis", folder));
}

// The least that tells the names of all processes.
void TakeSnapshot() { CloseHandle(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0)); }

}  // namespace

void bench::Define(Run& run) {
    // The host has these, and the plug-in's own libraries stay loaded as well.
    for (const wchar_t* library : {L"user32.dll", L"shell32.dll", L"version.dll", L"msvcrt.dll"}) {
        LoadLibraryW(library);
    }
    for (const wchar_t* library : {L"PluginCoreX64.dll", L"PlugPlugOwl.dll"}) {
        LoadLibraryW(BesideProgram(library).c_str());
    }
    run.Compare(
        "LoadLibrary and FreeLibrary", "an empty library",
        {{"this plug-in", [] { ShippedPlugin plugin; }},
         {"this plug-in, with start-up and shut-down",
          [] {
              ShippedPlugin plugin;
              plugin.Start();
              plugin.ShutDown();
          }},
         {"an empty library", [path = BesideProgram(L"Empty.dll")] { FreeLibrary(LoadLibraryW(path.c_str())); }}});
    run.Compare("failing search for the font manager", "floor: one snapshot of the processes",
                {{"this plug-in", SearchInVain}, {"floor: one snapshot of the processes", TakeSnapshot}});
}
