// Reads a JSON object member by member and complains, with the place in the file, about what is missing, of the wrong
// kind or unknown.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "simhost/scenario/Keys.h"

namespace simhost {

class ScenarioError : public std::runtime_error {
  public:
    ScenarioError(const std::string& place, const std::string& what) : std::runtime_error(place + ": " + what) {}
};

class ObjectReader {
  public:
    using Json = nlohmann::ordered_json;

    // Throws ScenarioError when the value is no object or has another key than the listed ones. The value must outlive
    // the reader.
    ObjectReader(const Json& value, std::string place, std::string_view keys);
    ObjectReader(const Json& value, std::string place, const ObjectKind& kind)
        : ObjectReader(value, std::move(place), kind.keys) {}

    const std::string& Place() const { return mPlace; }
    std::string PlaceOf(const std::string& key) const { return mPlace + "." + key; }

    // Null when there is no such member. Throws std::logic_error for a key that is not listed.
    const Json* Find(const std::string& key);
    // Throws ScenarioError when there is none.
    const Json& Need(const std::string& key);

    std::string NeedText(const std::string& key);
    std::string Text(const std::string& key, const std::string& otherwise);
    std::optional<std::string> OptionalText(const std::string& key);
    std::int64_t NeedNumber(const std::string& key);
    std::int64_t Number(const std::string& key, std::int64_t otherwise);
    bool Flag(const std::string& key, bool otherwise);
    // An empty array when there is no such member.
    const Json& Array(const std::string& key);

    // Throws std::logic_error when a listed key was never asked for: the list is what the schema is compared with.
    void Finish() const;

  private:
    const Json& mValue;
    std::string mPlace;
    std::set<std::string, std::less<>> mListed;
    std::set<std::string, std::less<>> mAsked;
};

std::set<std::string, std::less<>> SplitKeys(std::string_view keys);

std::string TextOf(const ObjectReader::Json& value, const std::string& place);
std::int64_t NumberOf(const ObjectReader::Json& value, const std::string& place);
bool FlagOf(const ObjectReader::Json& value, const std::string& place);
std::vector<std::string> TextsOf(const ObjectReader::Json& array, const std::string& place);

}  // namespace simhost
