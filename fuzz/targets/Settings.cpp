// The settings: members of whatever the parser takes, cut to whole numbers; where nlohmann's reader sees a whole
// number, it is that one.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <nlohmann/json.hpp>

#include "dialogs/PluginCoreSettingsJson.h"
#include "fuzz/reference/Text.h"
#include "fuzz/Targets.h"
#include "json/JsonParser.h"

namespace {

// In a type in which every cut number of interest fits.
std::int64_t Expected(const JsonValue* root, const wchar_t* key) {
    if (root == nullptr || !root->IsObject() || root->FindMember(key) == nullptr) {
        return 0;
    }
    const JsonValue& member = *root->FindMember(key);
    const double number = member.IsNumber() ? member.AsNumber() : 0;
    return static_cast<std::int64_t>(std::trunc(std::clamp(number, -2147483648.0, 2147483647.0)));
}

// Says nothing where the reader has no whole number.
void RequireWholeNumber(const nlohmann::json& root, const char* key, std::int32_t setting) {
    if (!root.is_object() || !root.contains(key) || !root[key].is_number_integer()) {
        return;
    }
    const nlohmann::json& number = root[key];
    const bool isBeyond = number.is_number_unsigned() && number.get<std::uint64_t>() > INT64_MAX;
    const std::int64_t expected =
        isBeyond ? INT32_MAX : std::clamp<std::int64_t>(number.get<std::int64_t>(), INT32_MIN, INT32_MAX);
    Require(setting == expected, "settings: a whole number");
}

}  // namespace

void FuzzSettings(std::string_view bytes) {
    const std::unique_ptr<JsonValue> root = ParseJson(Widened(bytes));
    const PluginCoreSettings settings = SettingsFromJson(root.get());
    Require(settings.dialogSuppression == Expected(root.get(), L"DialogSuppression"), "settings: DialogSuppression");
    Require(settings.pickBestMatch == Expected(root.get(), L"PickBestMatch"), "settings: PickBestMatch");

    const nlohmann::json theirs = nlohmann::json::parse(bytes, nullptr, false);
    // A byte order mark and a NUL are theirs to take.
    if (root != nullptr && !theirs.is_discarded()) {
        RequireWholeNumber(theirs, "DialogSuppression", settings.dialogSuppression);
        RequireWholeNumber(theirs, "PickBestMatch", settings.pickBestMatch);
    }
#ifdef _WIN32
    // As the plug-in itself reads them; a NUL ends that text.
    const PluginCoreSettings narrow = SettingsFromJson(ParseNarrowJson(std::string(bytes)).get());
    if (bytes.find('\0') == std::string_view::npos) {
        Require(narrow.dialogSuppression == settings.dialogSuppression, "settings: DialogSuppression of narrow text");
        Require(narrow.pickBestMatch == settings.pickBestMatch, "settings: PickBestMatch of narrow text");
    }
#endif
}
