// The plug-in's whole view of the PluginCore library: its 24 entries, its path and its version.
// Thread: main.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

#include "plugincore/EntryPoint.h"
#include "plugincore/PluginCore.h"

// The interface version that the plug-in asks the library for.
constexpr std::int32_t kPluginCoreInterfaceVersion = kPluginCoreVersion;

class PCILoader {
  public:
    // The one instance. The first call finds and loads the library; until a load has succeeded every call searches
    // again, so that a font manager started after the host is picked up. Null while the library cannot be loaded.
    // Lifetime: as long as the module is loaded.
    static PCILoader* GetSharedInstance();

    // Loads the library at `path` (ANSI) and binds its entries, unless there is an instance already. A library that
    // lacks entries still yields an instance: ask IsLoaded. Null when Windows cannot load the file.
    static PCILoader* LoadSharedInstance(const std::string& path);

    PCILoader(const PCILoader&) = delete;
    PCILoader& operator=(const PCILoader&) = delete;

    // Forgets the shared instance. Does not unload the library. Only the module's unloading destroys the instance; the
    // end of the process leaves it alone.
    virtual ~PCILoader();

    // Whether the library can be used: it accepts the plug-in's interface version or, when it cannot be asked, lacks no
    // entry. A library that cannot be asked and lacks entries is shown to the user in a message box, every time. Fills
    // the library's path, its version text and the number of missing entries; with a null output returns false and
    // fills nothing.
    bool IsLoaded(std::string* outPath, std::string* outVersion, std::uint32_t* outMissingCount) const;

    // Looks up all entries in `module` and counts the missing ones. With a null module every entry becomes null and the
    // count grows by their number.
    void BindEntryPoints(HMODULE module);

    // Diagnostic: logs every entry whose state differs from the expected one; true when there was none. Nothing calls
    // it; it is part of the class for debugging a library.
    bool CheckEntryPoints(bool expectBound) const;

    // In the alphabetical order of the contract; null when the library lacks the entry.
#define QUORVEL_DECLARE_ENTRY(name) EntryPoint<decltype(::name)> pf##name;
    PLUGINCORE_ENTRIES(QUORVEL_DECLARE_ENTRY)
#undef QUORVEL_DECLARE_ENTRY

  private:
    PCILoader();

    std::string mLibraryPath;     // what LoadLibraryA was given
    std::string mLibraryVersion;  // the library's PrivateBuild text, empty if it has none
    std::uint32_t mMissingCount;  // entries not found by the last binding
};

// The shared instance, for callers that need a started plug-in. Throws NoPluginCore while there is none.
const PCILoader& RequirePluginCore();

// Whether the PluginCore reports itself enabled; false while it, or its entry, is not there to be asked. Throws
// ForeignException when it throws.
bool PluginCoreIsEnabled();
