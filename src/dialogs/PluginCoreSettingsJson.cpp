#include "dialogs/PluginCoreSettingsJson.h"

#include <cstdint>
#include <limits>

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

PluginCoreSettings SettingsFromJson(const JsonValue* root) {
    if (root == nullptr || !root->IsObject()) {
        return {};
    }
    return {IntegerMember(root->AsObject(), L"DialogSuppression"), IntegerMember(root->AsObject(), L"PickBestMatch")};
}
