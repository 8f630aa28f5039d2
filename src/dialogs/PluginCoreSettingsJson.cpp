#include "dialogs/PluginCoreSettingsJson.h"

#include <cstdint>
#include <limits>
#include <string_view>

namespace {

// The member cut to a whole number; a number that does not fit becomes the nearest one that does.
std::int32_t IntegerMember(const JsonValue& object, std::wstring_view key) {
    using Limits = std::numeric_limits<std::int32_t>;
    const JsonValue* const member = object.FindMember(key);
    if (member == nullptr || !member->IsNumber()) {
        return 0;
    }
    const double number = member->AsNumber();
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
    return {IntegerMember(*root, L"DialogSuppression"), IntegerMember(*root, L"PickBestMatch")};
}
