#include "simhost/contract/PluginCoreWatch.h"

#include "doubles/common/ImportPatch.h"
#include "simhost/contract/ForwardedEntries.h"
#include "simhost/contract/GuardedMemory.h"

namespace simhost::contract {

namespace {

// One PluginCore per process.
HMODULE sLibrary = nullptr;

bool IsOrdinal(LPCSTR name) { return (reinterpret_cast<ULONG_PTR>(name) >> 16) == 0; }

FARPROC WINAPI WatchedGetProcAddress(HMODULE module, LPCSTR name) {
    const FARPROC real = GetProcAddress(module, name);
    if (IsOrdinal(name)) {
        return real;
    }
    const FARPROC forwarding = Forwarding(name, real);
    if (forwarding == nullptr) {
        return real;
    }
    if (sLibrary != module) {
        sLibrary = module;
        GuardedMemory::SetLibrary(module);
    }
    return real == nullptr ? nullptr : forwarding;
}

}  // namespace

void WatchPluginCore(HMODULE plugin) { ReplaceImport(plugin, "GetProcAddress", AsReplacement(WatchedGetProcAddress)); }

HMODULE WatchedLibrary() { return sLibrary; }

}  // namespace simhost::contract
