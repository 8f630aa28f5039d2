#include "simhost/contract/PluginCoreWatch.h"

#include <filesystem>

#include "doubles/common/ImportPatch.h"
#include "simhost/contract/ContractBook.h"
#include "simhost/contract/ForwardedEntries.h"
#include "simhost/contract/GuardedMemory.h"
#include "simhost/contract/LibraryImports.h"
#include "simhost/contract/MainThreadWatch.h"

namespace simhost::contract {

namespace {

// One PluginCore per process.
HMODULE sLibrary = nullptr;

bool IsOrdinal(LPCSTR name) { return (reinterpret_cast<ULONG_PTR>(name) >> 16) == 0; }

FARPROC WINAPI WatchedGetProcAddress(HMODULE module, LPCSTR name) {
    return IsOrdinal(name) ? GetProcAddress(module, name) : GuardedEntry(module, name);
}

// The folder of the library that was laid out as PluginCoreX64.dll under another name; null when it lies there itself.
const wchar_t* OwnFolder() { return _wgetenv(kPluginCoreFolderVariable); }

// Whether Windows takes the laid-out file, and does not search on.
bool IsLaidOut(const std::filesystem::path& library) {
    wchar_t program[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::path(program).parent_path() / library, ignored);
}

// What the library needs lies where it was taken from. That folder is searched from here on, but not for the library
// itself.
HMODULE WINAPI WatchedLoadLibraryA(LPCSTR file) {
    const std::filesystem::path path(file);
    if (OwnFolder() != nullptr && path.wstring().ends_with(L"PluginCoreX64.dll") && IsLaidOut(path)) {
        SetDllDirectoryW(OwnFolder());
    }
    return LoadLibraryA(file);
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
        GuardedMemory::SetLibrary(library);
        WatchLibrary(library);
    }
    return real == nullptr ? nullptr : forwarding;
}

void KeepBookIfAsked() {
    if (const wchar_t* const record = _wgetenv(kContractRecordVariable)) {
        Book().KeepIn(record);
        WatchMainThread();
    }
}

void WatchPluginCore(HMODULE plugin) {
    KeepBookIfAsked();
    ReplaceImport(plugin, "LoadLibraryA", AsReplacement(WatchedLoadLibraryA));
    ReplaceImport(plugin, "GetProcAddress", AsReplacement(WatchedGetProcAddress));
}

HMODULE WatchedLibrary() { return sLibrary; }

}  // namespace simhost::contract
