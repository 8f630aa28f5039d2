#include "plugincore/CrossPluginUtils.h"

#include "plugincore/PCILoader.h"
#include "support/Foreground.h"
#include "support/Log.h"
#include "support/PluginInfo.h"

namespace {

const PCILoader& PluginCore() { return *PCILoader::GetSharedInstance(); }

void LogResult(const char* operation, const std::string& path, std::int32_t result) {
    LogMessage(kLogExit, "%s('%s') returning %d", operation, path.c_str(), result);
}

// Runs `call`, whose result is the operation's, between the log lines of an operation without texts.
template <class Call>
std::int32_t WithEntryAndExitLogged(const char* operation, Call call) {
    LogMessage(kLogEntry, "Entering %s()", operation);
    const std::int32_t result = call();
    LogMessage(kLogExit, "Exiting %s()", operation);
    return result;
}

}  // namespace

namespace CrossPluginUtils {

std::int32_t HandleOpenExistingDocument(const std::string& path) {
    constexpr const char* kName = "CrossPluginUtils::HandleOpenExistingDocument";
    LogMessage(kLogEntry, "Entering %s('%s')", kName, path.c_str());
    std::uint64_t size = 0;
    const std::int32_t result = PluginCore().pfHandleOpenExistingDocument(path.c_str(), nullptr, &size);
    LogResult(kName, path, result);
    return result;
}

std::int32_t HandleSaveDocument(const std::string& path, const std::string& report) {
    constexpr const char* kName = "CrossPluginUtils::HandleSaveDocument";
    LogMessage(kLogEntry, "Entering %s('%s')", kName, path.c_str());
    const std::int32_t result = PluginCore().pfHandleSaveDocument(path.c_str(), report.c_str());
    LogResult(kName, path, result);
    return result;
}

std::int32_t HandleCloseDocument(const std::string& path, const std::string& report) {
    constexpr const char* kName = "CrossPluginUtils::HandleCloseDocument";
    // No quotes, unlike the others: intentional, readers of the trace know the line so.
    LogMessage(kLogEntry, "Entering %s(%s)", kName, path.c_str());
    const std::int32_t result = PluginCore().pfHandleCloseDocument(path.c_str(), report.c_str());
    LogResult(kName, path, result);
    return result;
}

std::int32_t Startup() {
    return WithEntryAndExitLogged("CrossPluginUtils::Startup", [] {
        return PluginCore().pfInitializePluginCoreInterface(PluginInfo::GetIdentityText().c_str());
    });
}

std::int32_t Shutdown() {
    return WithEntryAndExitLogged("CrossPluginUtils::Shutdown",
                                  [] { return PluginCore().pfTerminatePluginCoreInterface(); });
}

std::int32_t GetSocketPort(std::uint32_t* port) {
    return WithEntryAndExitLogged("CrossPluginUtils::GetSocketPort",
                                  [&] { return PluginCore().pfGetSocketPort(port); });
}

std::int32_t ProcessPanelMessages(std::uint8_t process) { return PluginCore().pfProcessPanelMessages(process); }

std::uint32_t IsPluginCoreEnabled() { return PluginCoreIsEnabled() ? 1 : 0; }

std::string& GetPluginCoreVersion(std::string& outVersion) {
    std::string path;
    std::uint32_t missingCount = 0;
    PluginCore().IsLoaded(&path, &outVersion, &missingCount);
    return outVersion;
}

void RefreshActiveFontList(void (*callback)()) {
    constexpr const char* kName = "CrossPluginUtils::RefreshActiveFontList";
    LogMessage(kLogEntry, "Entering %s", kName);
    if (callback != nullptr) {
        callback();
    }
    SwitchForegroundAwayAndBack(ForegroundMatch::kSameWindowOrParent);
    if (callback != nullptr) {
        callback();
    }
    LogMessage(kLogExit, "Exiting %s", kName);
}

}  // namespace CrossPluginUtils
