// What belongs to the host's thread and process, and what whoever is called must leave as it was: the plug-in after
// each message, an entry of the PluginCore after each call.
//
// Thread: any; some of it belongs to the thread that asks.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace simhost {

struct HostState {
    std::wstring currentFolder;
    // What SetDllDirectory has put into Windows' search for libraries. AddDllDirectory and SetDefaultDllDirectories
    // cannot be read back: that the plug-in does not import them is checked with its file.
    std::wstring libraryFolder;
    std::string locale;                  // of the C runtime that Windows ships, which the plug-in uses as well
    std::uint32_t threadLocale;          // of Windows
    std::uint32_t floatingPointControl;  // MXCSR: rounding, exception masks, flush to zero; not what was computed
    std::uint32_t x87Control;            // the same of the older unit; 0 where the compiler cannot tell
    std::uint32_t errorMode;             // which failures Windows shows in a box of its own
    std::uint32_t threadErrorMode;
    const void* exceptionFilter;                      // of exceptions that nobody handles
    std::shared_ptr<const std::wstring> environment;  // the whole block; the same object while nothing changes

    static HostState Now();
};

enum class HostStateKind {
    kCurrentFolder,
    kLibraryFolder,
    kLocale,
    kThreadLocale,
    kFloatingPointControl,
    kX87Control,
    kErrorMode,
    kThreadErrorMode,
    kExceptionFilter,
    kEnvironment,
};

struct HostStateChange {
    HostStateKind kind;
    std::string what;  // "the error mode became 0x1, it was 0x0"
};

// In the order of the kinds; empty when nothing differs.
std::vector<HostStateChange> ChangesBetween(const HostState& before, const HostState& now);

void CopyKind(HostStateKind kind, const HostState& from, HostState& to);

}  // namespace simhost
