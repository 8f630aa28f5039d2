#include "frame/InterfaceMessages.h"

#include <windows.h>

#include <string>

#include "frame/base/PluginGlobals.h"
#include "frame/base/SuiteOperations.h"
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
    if (sGlobals != nullptr) {
        // Started already, perhaps only in part: what a second start-up would register had no globals block to be kept
        // in. Shut-down comes first.
        return kNoErr;
    }
    const PCILoader* const pluginCore = PCILoader::GetSharedInstance();
    sPluginCoreIsUsable = false;
    if (pluginCore == nullptr) {
        ShowMissingPluginCore();
        return kNoErr;
    }
    std::string path;
    std::string version;
    std::uint32_t missingCount = 0;
    sPluginCoreIsUsable = pluginCore->IsLoaded(&path, &version, &missingCount);
    return sPluginCoreIsUsable ? StartupPlugin(message) : kNoErr;
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
        return ShutdownPlugin(message);
    }
    LogMessage(kLogNote, "- unknown message from kSPInterfaceCaller");
    return kNoErr;
}
