#include "simhost/scenario/ObjectReader.h"

#include <iterator>
#include <sstream>
#include <utility>

namespace simhost {

std::set<std::string, std::less<>> SplitKeys(std::string_view keys) {
    std::istringstream words{std::string(keys)};
    return {std::istream_iterator<std::string>(words), {}};
}

ObjectReader::ObjectReader(const Json& value, std::string place, std::string_view keys)
    : mValue(value), mPlace(std::move(place)), mListed(SplitKeys(keys)) {
    if (!value.is_object()) {
        throw ScenarioError(mPlace, "must be an object");
    }
    for (const auto& [key, member] : value.items()) {
        if (!mListed.contains(key)) {
            throw ScenarioError(mPlace, "unknown key \"" + key + "\"");
        }
    }
}

const ObjectReader::Json* ObjectReader::Find(const std::string& key) {
    if (!mListed.contains(key)) {
        throw std::logic_error("the key \"" + key + "\" is read but not listed");
    }
    mAsked.insert(key);
    const auto found = mValue.find(key);
    return found == mValue.end() ? nullptr : &*found;
}

const ObjectReader::Json& ObjectReader::Need(const std::string& key) {
    const Json* const value = Find(key);
    if (value == nullptr) {
        throw ScenarioError(mPlace, "\"" + key + "\" is missing");
    }
    return *value;
}

std::string ObjectReader::NeedText(const std::string& key) { return TextOf(Need(key), PlaceOf(key)); }

std::string ObjectReader::Text(const std::string& key, const std::string& otherwise) {
    return OptionalText(key).value_or(otherwise);
}

std::optional<std::string> ObjectReader::OptionalText(const std::string& key) {
    const Json* const value = Find(key);
    return value == nullptr ? std::nullopt : std::optional(TextOf(*value, PlaceOf(key)));
}

std::int64_t ObjectReader::NeedNumber(const std::string& key) { return NumberOf(Need(key), PlaceOf(key)); }

std::int64_t ObjectReader::Number(const std::string& key, std::int64_t otherwise) {
    const Json* const value = Find(key);
    return value == nullptr ? otherwise : NumberOf(*value, PlaceOf(key));
}

bool ObjectReader::Flag(const std::string& key, bool otherwise) {
    const Json* const value = Find(key);
    return value == nullptr ? otherwise : FlagOf(*value, PlaceOf(key));
}

const ObjectReader::Json& ObjectReader::Array(const std::string& key) {
    static const Json sEmpty = Json::array();
    const Json* const value = Find(key);
    if (value != nullptr && !value->is_array()) {
        throw ScenarioError(PlaceOf(key), "must be an array");
    }
    return value == nullptr ? sEmpty : *value;
}

void ObjectReader::Finish() const {
    for (const std::string& key : mListed) {
        if (!mAsked.contains(key)) {
            throw std::logic_error("the key \"" + key + "\" is listed but not read");
        }
    }
}

std::string TextOf(const ObjectReader::Json& value, const std::string& place) {
    if (!value.is_string()) {
        throw ScenarioError(place, "must be a text");
    }
    return value.get<std::string>();
}

std::int64_t NumberOf(const ObjectReader::Json& value, const std::string& place) {
    if (!value.is_number_integer()) {
        throw ScenarioError(place, "must be a whole number");
    }
    return value.get<std::int64_t>();
}

bool FlagOf(const ObjectReader::Json& value, const std::string& place) {
    if (!value.is_boolean()) {
        throw ScenarioError(place, "must be true or false");
    }
    return value.get<bool>();
}

std::vector<std::string> TextsOf(const ObjectReader::Json& array, const std::string& place) {
    std::vector<std::string> texts;
    for (const ObjectReader::Json& value : array) {
        texts.push_back(TextOf(value, place));
    }
    return texts;
}

}  // namespace simhost
