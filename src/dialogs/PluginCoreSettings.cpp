#include "dialogs/PluginCoreSettings.h"

#include <string>

#include "dialogs/PluginCoreSettingsJson.h"
#include "json/JsonParser.h"
#include "plugincore/PCILoader.h"
#include "plugincore/ReplyBuffer.h"
#include "support/ResultCodes.h"

PluginCoreSettings ReadPluginCoreSettings() {
    const PCILoader* const pluginCore = PCILoader::GetSharedInstance();
    ReplyBuffer<kSettingsSize> reply;
    if (pluginCore == nullptr || pluginCore->pfGetSettings(reply.Data(), reply.Size()) != kNoErr) {
        return {};
    }
    return SettingsFromJson(ParseNarrowJson(std::string(reply.Text())).get());
}
