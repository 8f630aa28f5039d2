#include "simhost/contract/TextChecks.h"

#include <windows.h>

#include <cstdio>
#include <nlohmann/json.hpp>

namespace simhost::contract {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kShown = 60;

ShapeFault NoJson(const Json::parse_error& error) { return {false, "no JSON at byte " + std::to_string(error.byte)}; }

// "[0].child[1]" names an item.
std::optional<std::string> FaultOfItem(const Json& item, const std::string& place) {
    if (!item.is_object()) {
        return place + " is no object";
    }
    struct Member {
        const char* name;
        bool (*is)(const Json&);
        const char* kind;
    };
    constexpr auto kIsText = [](const Json& value) { return value.is_string(); };
    constexpr auto kIsTitle = [](const Json& value) { return value.is_string() || value.is_null(); };
    constexpr auto kIsFlag = [](const Json& value) { return value.is_boolean(); };
    constexpr auto kIsList = [](const Json& value) { return value.is_array() || value.is_null(); };
    const Member members[] = {{"id", kIsText, "a text"},
                              {"title", kIsTitle, "a text or null"},
                              {"enabled", kIsFlag, "true or false"},
                              {"checked", kIsFlag, "true or false"},
                              {"child", kIsList, "an array or null"}};
    for (const Member& member : members) {
        const auto found = item.find(member.name);
        if (found == item.end()) {
            return place + " has no member \"" + member.name + "\"";
        }
        if (!member.is(*found)) {
            return place + "." + member.name + " is not " + member.kind;
        }
    }
    for (std::size_t i = 0; i < item.at("child").size(); ++i) {
        if (auto fault = FaultOfItem(item.at("child")[i], place + ".child[" + std::to_string(i) + "]")) {
            return fault;
        }
    }
    return std::nullopt;
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

std::optional<ShapeFault> FaultOfMenus(const std::string& json) {
    try {
        const Json root = Json::parse(json);
        if (root.is_object()) {
            const auto fault = FaultOfItem(root, "the item");
            return fault ? std::optional(ShapeFault{true, *fault}) : std::nullopt;
        }
        if (!root.is_array()) {
            return ShapeFault{true, "neither an item nor an array of items"};
        }
        for (std::size_t i = 0; i < root.size(); ++i) {
            if (const auto fault = FaultOfItem(root[i], "[" + std::to_string(i) + "]")) {
                return ShapeFault{true, *fault};
            }
        }
        return std::nullopt;
    } catch (const Json::parse_error& error) {
        return NoJson(error);
    }
}

std::optional<ShapeFault> FaultOfSettings(const std::string& json) {
    try {
        const Json root = Json::parse(json);
        if (!root.is_object()) {
            return ShapeFault{true, "no object"};
        }
        for (const char* const name : {"DialogSuppression", "PickBestMatch"}) {
            if (root.contains(name) && !root.at(name).is_number_integer()) {
                return ShapeFault{true, std::string(name) + " is no whole number"};
            }
        }
        return std::nullopt;
    } catch (const Json::parse_error& error) {
        return NoJson(error);
    }
}

}  // namespace simhost::contract
