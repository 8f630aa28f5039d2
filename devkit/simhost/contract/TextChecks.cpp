#include "simhost/contract/TextChecks.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>
#include <utility>

namespace simhost::contract {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kShown = 60;

// Keeps the first fault of each kind.
class ShapeFaults {
  public:
    void Add(ShapeFaultKind kind, const std::string& text) {
        if (std::none_of(mFaults.begin(), mFaults.end(), [&](const ShapeFault& fault) { return fault.kind == kind; })) {
            mFaults.push_back({kind, text});
        }
    }
    std::vector<ShapeFault> Take() { return std::move(mFaults); }

  private:
    std::vector<ShapeFault> mFaults;
};

struct Member {
    const char* name;
    bool (*is)(const Json&);
    const char* kind;
};
constexpr Member kItemMembers[] = {
    {"id", [](const Json& value) { return value.is_string(); }, "a text"},
    {"title", [](const Json& value) { return value.is_string() || value.is_null(); }, "a text or null"},
    {"enabled", [](const Json& value) { return value.is_boolean(); }, "true or false"},
    {"checked", [](const Json& value) { return value.is_boolean(); }, "true or false"},
    {"child", [](const Json& value) { return value.is_array() || value.is_null(); }, "an array or null"}};

void CheckItems(const Json& items, const std::string& place, ShapeFaults& faults);

// "[0].child[1]" names an item.
void CheckItem(const Json& item, const std::string& place, ShapeFaults& faults) {
    if (!item.is_object()) {
        faults.Add(ShapeFaultKind::kOtherKind, place + " is no object");
        return;
    }
    for (const Member& member : kItemMembers) {
        const auto found = item.find(member.name);
        if (found == item.end()) {
            faults.Add(ShapeFaultKind::kMemberMissing, place + " has no member \"" + member.name + "\"");
        } else if (!member.is(*found)) {
            faults.Add(ShapeFaultKind::kOtherKind, place + "." + member.name + " is not " + member.kind);
        }
    }
    const auto child = item.find("child");
    if (child != item.end() && child->is_array()) {
        CheckItems(*child, place + ".child", faults);
    }
}

void CheckItems(const Json& items, const std::string& place, ShapeFaults& faults) {
    for (std::size_t i = 0; i < items.size(); ++i) {
        CheckItem(items[i], place + "[" + std::to_string(i) + "]", faults);
    }
}

void CheckMenus(const Json& root, ShapeFaults& faults) {
    if (root.is_array()) {
        CheckItems(root, "", faults);
    } else if (root.is_object()) {
        CheckItem(root, "the item", faults);
    } else {
        faults.Add(ShapeFaultKind::kMemberMissing, "neither an item nor an array of items");
    }
}

void CheckSettings(const Json& root, ShapeFaults& faults) {
    if (!root.is_object()) {
        faults.Add(ShapeFaultKind::kOtherKind, "no object");
        return;
    }
    for (const char* const name : {"DialogSuppression", "PickBestMatch"}) {
        if (root.contains(name) && !root.at(name).is_number_integer()) {
            faults.Add(ShapeFaultKind::kOtherKind, std::string(name) + " is no whole number");
        }
    }
}

std::vector<ShapeFault> FaultsOf(const std::string& json, void (*check)(const Json& root, ShapeFaults& faults)) {
    ShapeFaults faults;
    try {
        check(Json::parse(json), faults);
    } catch (const Json::parse_error& error) {
        faults.Add(ShapeFaultKind::kNoJson, "no JSON at byte " + std::to_string(error.byte));
    } catch (const Json::out_of_range&) {
        // Left alone it would fly on through the plug-in, which waits for the answer.
        faults.Add(ShapeFaultKind::kNoJson, "a number that no double holds");
    }
    return faults.Take();
}

}  // namespace

bool IsUtf8(std::string_view text) {
    return text.empty() || MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.data(),
                                               static_cast<int>(text.size()), nullptr, 0) != 0;
}

std::string Printable(std::string_view text) {
    const bool isUtf8 = IsUtf8(text);
    std::string shown = "\"";
    for (const char c : text.substr(0, kShown)) {
        const auto byte = static_cast<unsigned char>(c);
        char code[8];
        if (byte < 0x20 || (byte >= 0x80 && !isUtf8)) {
            std::snprintf(code, sizeof code, "<%02X>", static_cast<unsigned>(byte));
            shown += code;
        } else {
            shown += c;
        }
    }
    return shown + (text.size() > kShown ? "...\"" : "\"");
}

std::vector<ShapeFault> FaultsOfMenus(const std::string& json) { return FaultsOf(json, &CheckMenus); }

std::vector<ShapeFault> FaultsOfSettings(const std::string& json) { return FaultsOf(json, &CheckSettings); }

}  // namespace simhost::contract
