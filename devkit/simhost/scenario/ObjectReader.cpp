#include "simhost/scenario/ObjectReader.h"

#include <algorithm>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "simhost/scenario/NearestWord.h"

namespace simhost {

namespace {

using Json = ObjectReader::Json;

const Json kEmptyObject = Json::object();
const Json kEmptyArray = Json::array();

template <class Words>
std::vector<std::string> AsList(const Words& words) {
    return {words.begin(), words.end()};
}

std::string Listed(const std::vector<std::string>& words) {
    std::string list;
    for (std::size_t i = 0; i < words.size(); ++i) {
        list += (i == 0 ? "" : i + 1 == words.size() ? " or " : ", ") + ("\"" + words[i] + "\"");
    }
    return list;
}

bool IsWithin(const Json& number, Range range) {
    constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (number.is_number_unsigned() && number.get<std::uint64_t>() > kMost) {
        return false;
    }
    const auto value = number.get<std::int64_t>();
    return value >= range.least && value <= range.most;
}

}  // namespace

std::set<std::string, std::less<>> SplitKeys(std::string_view keys) {
    std::istringstream words{std::string(keys)};
    return {std::istream_iterator<std::string>(words), {}};
}

ObjectReader::ObjectReader(const Json& value, Place place, std::string_view keys)
    : mValue(value.is_object() ? value : kEmptyObject), mPlace(std::move(place)), mListed(SplitKeys(keys)) {
    if (!value.is_object()) {
        mPlace.GiveUp("must be an object");
    }
    for (const auto& [key, member] : mValue.items()) {
        if (!mListed.contains(key)) {
            PlaceOf(key).ComplainOfKey("unknown key \"" + key + "\"" + DidYouMean(key, AsList(mListed)));
        }
    }
}

const Json* ObjectReader::Find(const std::string& key) {
    if (!mListed.contains(key)) {
        throw std::logic_error("the key \"" + key + "\" is read but not listed");
    }
    mAsked.insert(key);
    const auto found = mValue.find(key);
    return found == mValue.end() ? nullptr : &*found;
}

const Json* ObjectReader::Need(const std::string& key) {
    const Json* const value = Find(key);
    if (value == nullptr) {
        mPlace.Complain("\"" + key + "\" is missing");
    }
    return value;
}

std::string ObjectReader::NeedText(const std::string& key) {
    const Json* const value = Need(key);
    return value == nullptr ? "" : TextOf(*value, PlaceOf(key));
}

std::string ObjectReader::Text(const std::string& key, const std::string& otherwise) {
    return OptionalText(key).value_or(otherwise);
}

std::optional<std::string> ObjectReader::OptionalText(const std::string& key) {
    const Json* const value = Find(key);
    return value == nullptr ? std::nullopt : std::optional(TextOf(*value, PlaceOf(key)));
}

std::size_t ObjectReader::Choice(const std::string& key, const std::vector<std::string>& words, std::size_t otherwise) {
    const auto word = OptionalText(key);
    return word ? IndexOf(*word, key, words) : otherwise;
}

std::size_t ObjectReader::NeedChoice(const std::string& key, const std::vector<std::string>& words) {
    return Need(key) == nullptr ? 0 : Choice(key, words, 0);
}

std::size_t ObjectReader::IndexOf(const std::string& word, const std::string& key,
                                  const std::vector<std::string>& words) const {
    const auto found = std::find(words.begin(), words.end(), word);
    if (found == words.end()) {
        PlaceOf(key).Complain("must be " + Listed(words) + DidYouMean(word, words));
        return 0;
    }
    return static_cast<std::size_t>(found - words.begin());
}

std::int64_t ObjectReader::NeedNumber(const std::string& key, Range range) {
    const Json* const value = Need(key);
    return value == nullptr ? range.least : NumberOf(*value, PlaceOf(key), range);
}

std::int64_t ObjectReader::Number(const std::string& key, std::int64_t otherwise, Range range) {
    return OptionalNumber(key, range).value_or(otherwise);
}

std::optional<std::int64_t> ObjectReader::OptionalNumber(const std::string& key, Range range) {
    const Json* const value = Find(key);
    return value == nullptr ? std::nullopt : std::optional(NumberOf(*value, PlaceOf(key), range));
}

bool ObjectReader::Flag(const std::string& key, bool otherwise) {
    const Json* const value = Find(key);
    return value == nullptr ? otherwise : FlagOf(*value, PlaceOf(key));
}

const Json& ObjectReader::Array(const std::string& key) {
    const Json* const value = Find(key);
    if (value != nullptr && !value->is_array()) {
        PlaceOf(key).Complain("must be an array");
        return kEmptyArray;
    }
    return value == nullptr ? kEmptyArray : *value;
}

const Json& ObjectReader::Object(const std::string& key) {
    const Json* const value = Find(key);
    if (value != nullptr && !value->is_object()) {
        PlaceOf(key).Complain("must be an object");
        return kEmptyObject;
    }
    return value == nullptr ? kEmptyObject : *value;
}

std::string ObjectReader::NeedDocument(const std::string& key) {
    std::string name = NeedText(key);
    if (mValue.contains(key) && mValue[key].is_string()) {
        CheckKnown(name, "document", AsList(mPlace.Context().known.documents), PlaceOf(key));
    }
    return name;
}

void ObjectReader::Finish() const {
    for (const std::string& key : mListed) {
        if (!mAsked.contains(key)) {
            throw std::logic_error("the key \"" + key + "\" is listed but not read");
        }
    }
}

std::string TextOf(const Json& value, const Place& place) {
    if (!value.is_string()) {
        place.Complain("must be a text");
        return {};
    }
    return value.get<std::string>();
}

std::int64_t NumberOf(const Json& value, const Place& place, Range range) {
    if (!value.is_number_integer()) {
        place.Complain("must be a whole number");
        return range.least;
    }
    if (!IsWithin(value, range)) {
        place.Complain("must be from " + std::to_string(range.least) + " to " + std::to_string(range.most));
        return range.least;
    }
    return value.get<std::int64_t>();
}

bool FlagOf(const Json& value, const Place& place) {
    if (!value.is_boolean()) {
        place.Complain("must be true or false");
        return false;
    }
    return value.get<bool>();
}

std::vector<std::string> TextsOf(const Json& value, const Place& place) {
    std::vector<std::string> texts;
    if (!value.is_array()) {
        place.Complain("must be an array");
        return texts;
    }
    for (std::size_t i = 0; i < value.size(); ++i) {
        texts.push_back(TextOf(value[i], place.Element(i)));
    }
    return texts;
}

void CheckKnown(const std::string& word, const std::string& kind, const std::vector<std::string>& known,
                const Place& place) {
    if (std::find(known.begin(), known.end(), word) == known.end()) {
        place.Complain("there is no " + kind + " \"" + word + "\"" + DidYouMean(word, known));
    }
}

}  // namespace simhost
