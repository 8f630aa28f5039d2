#include "dialogs/PluginCoreSettings.h"

#include <limits>
#include <memory>
#include <string>

#include "json/JsonParser.h"
#include "json/JsonValue.h"
#include "plugincore/PCILoader.h"
#include "plugincore/ReplyBuffer.h"
#include "support/ResultCodes.h"

namespace {

// The member cut to a whole number; a number that does not fit becomes the nearest one that does.
std::int32_t IntegerMember(const JsonValue::Object& object, const wchar_t* key) {
    using Limits = std::numeric_limits<std::int32_t>;
    const auto member = object.find(key);
    if (member == object.end() || !member->second->IsNumber()) {
        return 0;
    }
    const double number = member->second->AsNumber();
    if (number >= Limits::max()) {
        return Limits::max();
    }
    if (number <= Limits::min()) {
        return Limits::min();
    }
    return static_cast<std::int32_t>(number);
}

}  // namespace

PluginCoreSettings ReadPluginCoreSettings() {
    const PCILoader* const pluginCore = PCILoader::GetSharedInstance();
    ReplyBuffer<kSettingsSize> reply;
    if (pluginCore == nullptr || pluginCore->pfGetSettings(reply.Data(), reply.Size()) != kNoErr) {
        return {};
    }
    const std::unique_ptr<JsonValue> settings = ParseNarrowJson(std::string(reply.Text()));
    if (settings == nullptr || !settings->IsObject()) {
        return {};
    }
    return {IntegerMember(settings->AsObject(), L"DialogSuppression"),
            IntegerMember(settings->AsObject(), L"PickBestMatch")};
}
