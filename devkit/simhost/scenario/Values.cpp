#include "simhost/scenario/Values.h"

#include <optional>
#include <string_view>
#include <utility>

#include "doubles/common/Text.h"
#include "simhost/scenario/ObjectReader.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kJsonSuffix = ":json";

std::string AsText(const Json& value) { return value.is_string() ? value.get<std::string>() : value.dump(); }

// The name when the text is "${name}" and nothing else.
std::optional<std::string> OnlyName(const std::string& text) {
    if (text.size() > 3 && text.starts_with("${") && text.find('}') == text.size() - 1) {
        return text.substr(2, text.size() - 3);
    }
    return std::nullopt;
}

// `lookup` gives the value of a name, null when there is none.
template <class Lookup>
std::string FilledText(const std::string& text, const std::string& place, const Lookup& lookup) {
    std::string filled;
    std::size_t at = 0;
    for (std::size_t mark = text.find("${"); mark != std::string::npos; mark = text.find("${", at)) {
        const std::size_t end = text.find('}', mark);
        std::string name = end == std::string::npos ? "" : text.substr(mark + 2, end - mark - 2);
        const bool json = name.ends_with(kJsonSuffix);
        name.resize(name.size() - (json ? kJsonSuffix.size() : 0));
        const Json* const value = lookup(name);
        if (value == nullptr) {
            throw ScenarioError(place, "unknown placeholder in \"" + text + "\"");
        }
        filled += text.substr(at, mark - at);
        filled += json ? AsJsonText(AsText(*value)) : AsText(*value);
        at = end + 1;
    }
    return filled + text.substr(at);
}

// Puts `changed` where the pointer points to. A member may be new; whatever it belongs to must be there.
void Change(Json& copy, const std::string& name, const std::string& pointer, Json changed, const std::string& place) {
    const Json::json_pointer where(pointer);
    const Json::json_pointer parent = where.parent_pointer();
    if (!copy.contains(where) && !(copy.contains(parent) && copy.at(parent).is_object())) {
        throw ScenarioError(place, "\"" + name + "\" has nothing at \"" + pointer + "\"");
    }
    copy[where] = std::move(changed);
}

}  // namespace

template <class Lookup>
Json Values::Filled(const Json& value, const std::string& place, const Lookup& lookup) {
    if (value.is_string()) {
        const auto text = value.get<std::string>();
        const auto name = OnlyName(text);
        const Json* const whole = name ? lookup(*name) : nullptr;
        return whole != nullptr ? *whole : Json(FilledText(text, place, lookup));
    }
    if (value.is_object() && value.contains("like")) {
        return ChangedCopy(value, place, lookup);
    }
    Json filled = value;
    if (value.is_structured()) {
        for (auto& [key, member] : filled.items()) {
            member = Filled(member, place + (value.is_array() ? "[" + key + "]" : "." + key), lookup);
        }
    }
    return filled;
}

template <class Lookup>
Json Values::ChangedCopy(const Json& like, const std::string& place, const Lookup& lookup) {
    ObjectReader reader(like, place, keys::kLike);
    const std::string name = reader.NeedText("like");
    const Json* const set = reader.Find("set");
    reader.Finish();
    const Json* const original = lookup(name);
    if (original == nullptr) {
        throw ScenarioError(place, "there is no value \"" + name + "\"");
    }
    Json copy = *original;
    const Json changes = set == nullptr ? Json::object() : *set;
    for (const auto& [pointer, changed] : changes.items()) {
        Change(copy, name, pointer, Filled(changed, place, lookup), place);
    }
    return copy;
}

Values::Values(const Placeholders& placeholders, const Json& own, const std::string& place)
    : mWaiting(own), mPlace(place) {
    if (!own.is_object()) {
        throw ScenarioError(place, "must be an object");
    }
    for (const auto& [name, meaning] : placeholders) {
        if (own.contains(name)) {
            throw ScenarioError(place + "." + name, "the name has a meaning already");
        }
        mKnown[name] = meaning;
    }
    for (const auto& [name, value] : own.items()) {
        Named(name, place);
    }
}

const Json& Values::Named(const std::string& name, const std::string& place) {
    if (const auto known = mKnown.find(name); known != mKnown.end()) {
        return known->second;
    }
    if (!mResolving.insert(name).second) {
        throw ScenarioError(place, "\"" + name + "\" is used in itself");
    }
    const std::string where = mPlace + "." + name;
    Json value = Filled(mWaiting.at(name), where, [&](const std::string& other) {
        return mKnown.contains(other) || mWaiting.contains(other) ? &Named(other, where) : nullptr;
    });
    mResolving.erase(name);
    return mKnown[name] = std::move(value);
}

Json Values::FillIn(const Json& value, const std::string& place) const {
    return Filled(value, place, [&](const std::string& name) {
        const auto known = mKnown.find(name);
        return known == mKnown.end() ? nullptr : &known->second;
    });
}

}  // namespace simhost
