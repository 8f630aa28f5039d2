#include "simhost/contract/PluginCoreWatch.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "doubles/common/ImportPatch.h"
#include "simhost/checks/HostStateWatch.h"
#include "simhost/contract/ContractBook.h"
#include "simhost/contract/DialogAnswerer.h"
#include "simhost/contract/ForwardedEntries.h"
#include "simhost/contract/GuardedMemory.h"
#include "simhost/contract/HitFindings.h"
#include "simhost/contract/LibraryImports.h"
#include "simhost/contract/RecordedCalls.h"
#include "simhost/contract/Timeline.h"
#include "simhost/run/FlightRecorder.h"

namespace simhost::contract {

namespace {

// One PluginCore in a process at a time.
HMODULE sLibrary = nullptr;
bool sIsOwn = false;
// Where the plug-in's host lies: with --in-process this program lies elsewhere, among libraries of the same names.
std::filesystem::path sHostFolder;

bool IsOrdinal(LPCSTR name) { return (reinterpret_cast<ULONG_PTR>(name) >> 16) == 0; }

FARPROC WINAPI WatchedGetProcAddress(HMODULE module, LPCSTR name) {
    return IsOrdinal(name) ? GetProcAddress(module, name) : GuardedEntry(module, name);
}

// The library that was laid out as PluginCoreX64.dll; empty for the kit's double.
std::filesystem::path OwnLibrary() {
    const wchar_t* const file = _wgetenv(kPluginCoreFileVariable);
    return file == nullptr ? std::filesystem::path() : file;
}

std::string ContentsOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::filesystem::path FileOf(HMODULE module) {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(module, path, MAX_PATH);
    return path;
}

// By its bytes: a scenario says where the copies lie, and may move them.
bool IsCopyOfOwn(HMODULE library) {
    return !OwnLibrary().empty() && ContentsOf(FileOf(library)) == ContentsOf(OwnLibrary());
}

// Whether Windows takes the laid-out file, and does not search on.
bool IsLaidOut(const std::filesystem::path& library) {
    std::error_code ignored;
    return std::filesystem::exists(sHostFolder / library, ignored);
}

// What the library needs lies where it was taken from. That folder is searched from here on, but not for the library
// itself.
HMODULE WINAPI WatchedLoadLibraryA(LPCSTR file) {
    const OthersTurn turn;
    const std::filesystem::path path(file);
    if (IsOwnLibraryAsked() && path.wstring().ends_with(L"PluginCoreX64.dll") && IsLaidOut(path)) {
        SetDllDirectoryW(OwnLibrary().parent_path().c_str());
    }
    const bool isInProcess = FileOf(nullptr).parent_path() != sHostFolder;
    return isInProcess && path.is_relative() ? LoadLibraryW((sHostFolder / path).c_str()) : LoadLibraryA(file);
}

}  // namespace

FARPROC GuardedEntry(HMODULE library, const char* name) {
    const FARPROC real = GetProcAddress(library, name);
    const FARPROC forwarding = Forwarding(name, real);
    if (forwarding == nullptr) {
        return real;
    }
    if (sLibrary != library) {
        sLibrary = library;
        sIsOwn = IsCopyOfOwn(library);
        GuardedMemory::SetLibrary(library);
        WatchLibrary(library);
    }
    return real == nullptr ? nullptr : forwarding;
}

void KeepBookIfAsked() {
    if (const wchar_t* const record = _wgetenv(kContractRecordVariable)) {
        Book().KeepIn(record);
        RecordLimitPerEntry();
        AnswerDialogs();
    }
}

void WatchPluginCore(HMODULE plugin) {
    KeepBookIfAsked();
    sHostFolder = FileOf(plugin).parent_path().parent_path();
    ReplaceImport(plugin, "LoadLibraryA", AsReplacement(WatchedLoadLibraryA));
    ReplaceImport(plugin, "GetProcAddress", AsReplacement(WatchedGetProcAddress));
}

HMODULE WatchedLibrary() { return sLibrary; }

void ForgetRun() {
    NoteHits();
    Book().ForgetFindings();
    ForgetCalls();
    ForgetTimeline();
}

void ForgetLibrary() {
    sLibrary = nullptr;
    sIsOwn = false;
    GuardedMemory::SetLibrary(nullptr);
    ForgetRun();
}

bool IsOwnLibraryAsked() { return !OwnLibrary().empty(); }
bool IsOwnLibraryWatched() { return sIsOwn; }

}  // namespace simhost::contract
