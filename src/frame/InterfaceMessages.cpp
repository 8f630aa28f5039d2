#include "frame/InterfaceMessages.h"

#include <windows.h>

#include <string>

#include "frame/base/SuiteOperations.h"
#include "frame/base/Suites.h"
#include "frame/LifeCycle.h"
#include "plugincore/PCILoader.h"
#include "support/Log.h"
#include "support/PluginInfo.h"
#include "support/ResultCodes.h"
#include "support/TextConversion.h"

namespace {

// The text is the plug-in's own path: it tells the user which file has no PluginCore.
void ShowMissingPluginCore() {
    constexpr UINT kStyle = MB_OK | MB_SYSTEMMODAL | MB_SETFOREGROUND;
    const std::wstring path = Utf16FromUtf8(PluginInfo::GetPluginPath(sPluginIdentifier));
    MessageBoxW(nullptr, path.c_str(), L"Missing PluginCore", kStyle);
}

// Succeeds from the host's point of view whatever happens; without a usable PluginCore nothing is registered, so that
// the host never sends anything but its closing messages.
std::int32_t HandleStartup(SPInterfaceMessage* message) {
    const PCILoader* const pluginCore = PCILoader::GetSharedInstance();
    if (pluginCore == nullptr) {
        ShowMissingPluginCore();
        return kNoErr;
    }
    std::string path;
    std::string version;
    std::uint32_t missingCount = 0;
    return pluginCore->IsLoaded(&path, &version, &missingCount) ? StartupPlugin(message) : kNoErr;
}

std::int32_t HandleShutdown(SPMessageData* message) {
    const std::int32_t result = ShutdownPlugin(message);
    // Without a PluginCore there was nothing to shut down, but the suites are held since the first message. What
    // shut-down could not release is not tried again.
    if (!HasShutDown() && SuitesAreHeld()) {
        ReleaseSuites();
    }
    return result;
}

}  // namespace

std::int32_t HandleInterfaceMessage(const char* selector, SPMessageData* message) {
    if (TokensAreEqual(selector, kSPInterfaceStartupSelector)) {
        return HandleStartup(reinterpret_cast<SPInterfaceMessage*>(message));
    }
    if (TokensAreEqual(selector, kSPInterfaceAboutSelector)) {
        return AboutPlugin(message);
    }
    if (TokensAreEqual(selector, kSPInterfaceShutdownSelector)) {
        return HandleShutdown(message);
    }
    LogMessage(kLogNote, "- unknown message from kSPInterfaceCaller");
    return kNoErr;
}
