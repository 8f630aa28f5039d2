#include "plugincore/PCILoader.h"

#include <utility>

#include "plugincore/EntryInterposition.h"
#include "plugincore/LibraryLoading.h"
#include "plugincore/PluginCoreLocation.h"
#include "support/Log.h"
#include "support/UntilUnloaded.h"

namespace {

// Set by the first successful load, cleared by the destructor.
PCILoader* sSharedInstance = nullptr;

// Frees the binding when the module alone is unloaded. The library stays.
struct BindingOwner {
    ~BindingOwner() { delete sSharedInstance; }
};
const UntilUnloaded<BindingOwner> sBindingOwner;

// What the count starts from and what the message about an empty library is tied to, although there are 24 entries:
// a library that lacks all 24 gets the message with the reason. Intentional, both texts are in the field.
constexpr std::uint32_t kAllFunctionsMissing = 20;

void LogWrongEntryState(const char* entryName, const char* state) {
    LogMessage(kLogNote, "ERROR:  this->pf%s is %s.", entryName, state);
}

void ShowIncompatibleLibrary(const std::string& text) {
    constexpr UINT kStyle = MB_SYSTEMMODAL | MB_SETFOREGROUND;
    // Narrow: the path is what LoadLibraryA was given.
    MessageBoxA(nullptr, text.c_str(), "Incompatible PluginCore", kStyle);
}

}  // namespace

PCILoader* PCILoader::GetSharedInstance() {
    if (sSharedInstance != nullptr) {
        return sSharedInstance;
    }
    constexpr const char* kName = "PCILoader::GetSharedInstance";
    LogMessage(kLogEntry, "Entering first call to %s()", kName);
    sSharedInstance = LoadSharedInstance(FindPluginCorePath());
    LogMessage(kLogExit, "Exiting first call to %s(); sSharedInstance=0x%08x", kName, Low32(sSharedInstance));
    return sSharedInstance;
}

PCILoader* PCILoader::LoadSharedInstance(const std::string& path) {
    if (sSharedInstance != nullptr) {
        return sSharedInstance;
    }
    char version[1024] = {};
    const HMODULE module = LoadLibraryWithVersion(path, version, sizeof(version));
    if (module == nullptr) {
        LogMessage(kLogNote, "ERROR:  cannot find %s", kPluginCoreFileName);
        return nullptr;
    }
    LogMessage(kLogNote, "Loaded %s", path.c_str());
    // Memory may run out up to here and for the instance itself, but not once that is shared: the next call then
    // searches again. The library stays loaded all the same; it is never unloaded.
    std::string libraryPath = path;
    std::string libraryVersion = version;
    sSharedInstance = new PCILoader();
    sSharedInstance->mLibraryPath = std::move(libraryPath);
    sSharedInstance->mLibraryVersion = std::move(libraryVersion);
    sSharedInstance->BindEntryPoints(module);
    return sSharedInstance;
}

PCILoader::PCILoader() : mMissingCount(kAllFunctionsMissing) {
    BindEntryPoints(nullptr);
    CheckEntryPoints(false);
}

PCILoader::~PCILoader() { sSharedInstance = nullptr; }

bool PCILoader::IsLoaded(std::string* outPath, std::string* outVersion, std::uint32_t* outMissingCount) const {
    if (outPath == nullptr || outVersion == nullptr || outMissingCount == nullptr) {
        LogMessage(kLogNote, "PCILoader::IsLoaded() returning false because it was called incorrectly.");
        return false;
    }
    *outPath = mLibraryPath;
    *outVersion = mLibraryVersion;
    *outMissingCount = mMissingCount;

    if (!pfGetAPIVersion.IsNull()) {
        // The version decides alone: an accepted library may lack entries, a refused one is refused in silence.
        std::uint32_t value = 0;
        return pfGetAPIVersion(&value, kPluginCoreInterfaceVersion) == 0;
    }
    if (mMissingCount == 0) {
        return true;
    }
    if (mMissingCount == kAllFunctionsMissing) {
        LogMessage(kLogNote, "PCILoader::IsLoaded() returning false because all %d functions are missing.",
                   static_cast<int>(kAllFunctionsMissing));
    } else {
        LogMessage(kLogNote,
                   "PCILoader::IsLoaded() returning false. Reason: %d function(s) missing from %s, version '%s'",
                   static_cast<int>(mMissingCount), mLibraryPath.c_str(), mLibraryVersion.c_str());
    }
    ShowIncompatibleLibrary(mLibraryPath + " (version " + mLibraryVersion + ")");
    return false;
}

void PCILoader::BindEntryPoints(HMODULE module) {
    if (module != nullptr) {
        mMissingCount = 0;
    }
    const auto bind = [&](auto& entry, const char* name) {
        entry.Bind(InterposeEntry(module, name, GetProcAddressLogged(module, name)));
        if (entry.IsNull()) {
            ++mMissingCount;
        }
    };
#define QUORVEL_BIND_ENTRY(name) bind(pf##name, #name);
    PLUGINCORE_ENTRIES(QUORVEL_BIND_ENTRY)
#undef QUORVEL_BIND_ENTRY
}

bool PCILoader::CheckEntryPoints(bool expectBound) const {
    bool allAsExpected = true;
    const auto check = [&](const auto& entry, const char* name) {
        if (entry.IsNull() == expectBound) {
            LogWrongEntryState(name, expectBound ? "NULL" : "not NULL");
            allAsExpected = false;
        }
    };
#define QUORVEL_CHECK_ENTRY(name) check(pf##name, #name);
    PLUGINCORE_ENTRIES(QUORVEL_CHECK_ENTRY)
#undef QUORVEL_CHECK_ENTRY
    return allAsExpected;
}

const PCILoader& RequirePluginCore() {
    const PCILoader* const pluginCore = PCILoader::GetSharedInstance();
    if (pluginCore == nullptr) {
        throw NoPluginCore();
    }
    return *pluginCore;
}

bool PluginCoreIsEnabled() {
    const PCILoader* const pluginCore = PCILoader::GetSharedInstance();
    if (pluginCore == nullptr) {
        return false;
    }
    std::uint8_t isEnabled = 0;
    pluginCore->pfPluginIsEnabled(1, &isEnabled);
    return isEnabled != 0;
}
