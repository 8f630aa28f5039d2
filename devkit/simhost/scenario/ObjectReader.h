// Reads a JSON object member by member and complains, with the place in the file, about what is missing, of the wrong
// kind or unknown.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

namespace simhost {

class ScenarioError : public std::runtime_error {
  public:
    ScenarioError(const std::string& place, const std::string& what) : std::runtime_error(place + ": " + what) {}
};

class ObjectReader {
  public:
    using Json = nlohmann::ordered_json;

    // Throws ScenarioError when the value is no object. The value must outlive the reader.
    ObjectReader(const Json& value, std::string place);

    const std::string& Place() const { return mPlace; }
    std::string PlaceOf(const std::string& key) const { return mPlace + "." + key; }

    // Null when there is no such member.
    const Json* Find(const std::string& key);
    // Throws when there is none.
    const Json& Need(const std::string& key);

    std::string NeedText(const std::string& key);
    std::string Text(const std::string& key, const std::string& otherwise);
    std::optional<std::string> OptionalText(const std::string& key);
    std::int64_t Number(const std::string& key, std::int64_t otherwise);
    bool Flag(const std::string& key, bool otherwise);
    // An empty array when there is no such member.
    const Json& Array(const std::string& key);

    // Throws when there is a member that nobody asked for.
    void Finish() const;

  private:
    const Json& mValue;
    std::string mPlace;
    std::set<std::string> mKnown;
};

std::string TextOf(const ObjectReader::Json& value, const std::string& place);
std::int64_t NumberOf(const ObjectReader::Json& value, const std::string& place);
bool FlagOf(const ObjectReader::Json& value, const std::string& place);
std::vector<std::string> TextsOf(const ObjectReader::Json& array, const std::string& place);

}  // namespace simhost
