#include "simhost/scenario/Values.h"

#include <optional>
#include <string_view>
#include <utility>

#include "doubles/common/Text.h"
#include "simhost/scenario/NearestWord.h"
#include "simhost/scenario/ObjectReader.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::string_view kJsonSuffix = ":json";
// Values that use each other: far more than anybody can follow.
constexpr std::size_t kDeepest = 100;

std::string AsText(const Json& value) { return value.is_string() ? value.get<std::string>() : value.dump(); }

// The name when the text is "${name}" and nothing else.
std::optional<std::string> OnlyName(const std::string& text) {
    if (text.size() > 3 && text.starts_with("${") && text.find('}') == text.size() - 1) {
        return text.substr(2, text.size() - 3);
    }
    return std::nullopt;
}

// Puts `changed` where the pointer points to; false when nothing is there. A member may be new; whatever it belongs to
// must be there.
bool Change(Json& copy, const std::string& pointer, Json changed) {
    try {
        const Json::json_pointer where(pointer);
        const Json::json_pointer parent = where.parent_pointer();
        if (!copy.contains(where) && !(copy.contains(parent) && copy.at(parent).is_object())) {
            return false;
        }
        copy[where] = std::move(changed);
        return true;
    } catch (const Json::exception&) {
        return false;  // no pointer at all
    }
}

}  // namespace

Values::Values(const Placeholders& placeholders, const Json& own, const Place& place)
    : mWaiting(own.is_object() ? own : Json::object()), mPlace(place) {
    if (!own.is_object()) {
        place.Complain("must be an object");
    }
    for (const auto& [name, meaning] : placeholders) {
        if (mWaiting.contains(name)) {
            place.Member(name).ComplainOfKey("the name \"" + name + "\" has a meaning already");
            mWaiting.erase(name);
        }
        mKnown[name] = meaning;
    }
    const Json all = mWaiting;
    for (const auto& [name, value] : all.items()) {
        Named(name, place.Member(name));
    }
}

// Null when there is no such value; `place` is where it is used.
const Json* Values::Named(const std::string& name, const Place& place) {
    if (const auto known = mKnown.find(name); known != mKnown.end()) {
        return &known->second;
    }
    if (!mWaiting.contains(name)) {
        return nullptr;
    }
    if (mResolving.contains(name)) {
        place.GiveUp("\"" + name + "\" is used in itself");
        static const Json sNothing;
        return &sNothing;
    }
    if (mResolving.size() == kDeepest) {
        place.GiveUp("more than " + std::to_string(kDeepest) + " values that use each other");
        static const Json sNothing;
        return &sNothing;
    }
    mResolving.insert(name);
    Json value = FillIn(mWaiting.at(name), mPlace.Member(name));
    mResolving.erase(name);
    return &(mKnown[name] = std::move(value));
}

Json Values::FillIn(const Json& value, const Place& place) {
    if (value.is_string()) {
        return FilledText(value.get<std::string>(), place);
    }
    if (value.is_object() && value.contains("like")) {
        return ChangedCopy(value, place);
    }
    return FilledMembers(value, place);
}

Json Values::FilledMembers(const Json& value, const Place& place) {
    Json filled = value;
    if (value.is_object()) {
        for (const auto& [key, member] : value.items()) {
            filled[key] = FillIn(member, place.Member(key));
        }
    }
    for (std::size_t i = 0; value.is_array() && i < value.size(); ++i) {
        filled[i] = FillIn(value[i], place.Element(i));
    }
    return filled;
}

// From now on the place is that of the value which it names.
void Values::NoteCopy(const std::string& name, const Place& place) const {
    if (mWaiting.contains(name) && !place.IsGivenUp()) {
        place.Context().origins.SetCopy(place.Pointer(), mPlace.Member(name).Pointer());
    }
}

Json Values::FilledText(const std::string& text, const Place& place) {
    if (const auto name = OnlyName(text)) {
        if (const Json* const whole = Named(*name, place)) {
            NoteCopy(*name, place);
            return *whole;
        }
    }
    std::string filled;
    std::size_t at = 0;
    for (std::size_t mark = text.find("${"); mark != std::string::npos; mark = text.find("${", at)) {
        const std::size_t end = text.find('}', mark);
        std::string name = end == std::string::npos ? "" : text.substr(mark + 2, end - mark - 2);
        const bool json = name.ends_with(kJsonSuffix);
        name.resize(name.size() - (json ? kJsonSuffix.size() : 0));
        const Json* const value = Named(name, place);
        if (value == nullptr) {
            place.GiveUp("unknown placeholder in \"" + text + "\"" + DidYouMean(name, Names()));
            return nullptr;
        }
        filled += text.substr(at, mark - at);
        filled += json ? AsJsonText(AsText(*value)) : AsText(*value);
        at = end + 1;
    }
    return filled + text.substr(at);
}

Json Values::ChangedCopy(const Json& like, const Place& place) {
    ObjectReader reader(like, place, keys::kLike);
    const std::string name = reader.NeedText("like");
    const Json changes = reader.Object("set");
    reader.Finish();
    const Json* const original = Named(name, place);
    if (original == nullptr) {
        place.GiveUp("there is no value \"" + name + "\"" + DidYouMean(name, Names()));
        return nullptr;
    }
    Json copy = *original;
    Origins& origins = place.Context().origins;
    // The changes are filled in where they were written, before the place itself becomes that of the copy.
    std::vector<std::pair<std::string, Place>> changed;
    for (const auto& [pointer, change] : changes.items()) {
        const Place aside = place.Aside(place.Member("set").Member(pointer));
        if (Change(copy, pointer, FillIn(change, aside))) {
            changed.emplace_back(pointer, aside);
        } else {
            aside.ComplainOfKey("\"" + name + "\" has nothing at \"" + pointer + "\"");
        }
    }
    NoteCopy(name, place);
    for (const auto& [pointer, aside] : changed) {
        origins.SetCopy(place.Pointer() + pointer, aside.Pointer());
    }
    return copy;
}

std::vector<std::string> Values::Names() const {
    std::vector<std::string> names;
    for (const auto& [name, value] : mKnown) {
        names.push_back(name);
    }
    for (const auto& [name, value] : mWaiting.items()) {
        if (!mKnown.contains(name)) {
            names.push_back(name);
        }
    }
    return names;
}

}  // namespace simhost
