// Reads a JSON object member by member and complains about what is missing, of the wrong kind, out of range or unknown.
// Reading goes on after a complaint, with a harmless value, so that everything wrong is found at once.
#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "simhost/scenario/Keys.h"
#include "simhost/scenario/Place.h"
#include "simhost/scenario/Ranges.h"

namespace simhost {

class ObjectReader {
  public:
    using Json = nlohmann::ordered_json;

    // Complains when the value is no object or has another key than the listed ones. The value must outlive the reader.
    ObjectReader(const Json& value, Place place, std::string_view keys);
    ObjectReader(const Json& value, Place place, const ObjectKind& kind)
        : ObjectReader(value, std::move(place), kind.keys) {}

    const Place& OwnPlace() const { return mPlace; }
    Place PlaceOf(const std::string& key) const { return mPlace.Member(key); }

    // Null when there is no such member. Throws std::logic_error for a key that is not listed.
    const Json* Find(const std::string& key);
    // Complains when there is none.
    const Json* Need(const std::string& key);

    std::string NeedText(const std::string& key);
    std::string Text(const std::string& key, const std::string& otherwise);
    std::optional<std::string> OptionalText(const std::string& key);
    // One of a few words, by its place among them.
    std::size_t Choice(const std::string& key, const std::vector<std::string>& words, std::size_t otherwise);
    std::size_t NeedChoice(const std::string& key, const std::vector<std::string>& words);
    std::int64_t NeedNumber(const std::string& key, Range range);
    std::int64_t Number(const std::string& key, std::int64_t otherwise, Range range);
    std::optional<std::int64_t> OptionalNumber(const std::string& key, Range range);
    // A number that fits the type.
    std::int32_t NeedInt32(const std::string& key) {
        return static_cast<std::int32_t>(NeedNumber(key, ranges::kInt32));
    }
    std::int32_t Int32(const std::string& key, std::int32_t otherwise) {
        return static_cast<std::int32_t>(Number(key, otherwise, ranges::kInt32));
    }
    bool Flag(const std::string& key, bool otherwise);
    // An empty array when there is no such member.
    const Json& Array(const std::string& key);
    // An empty object when there is no such member.
    const Json& Object(const std::string& key);

    // The name of one of the host's documents.
    std::string NeedDocument(const std::string& key);

    // Calls `read` with a reader of each element, which is an object, and finishes the reader.
    template <class Read>
    void ForEach(const std::string& key, const ObjectKind& kind, const Read& read) {
        const Json& array = Array(key);
        for (std::size_t i = 0; i < array.size(); ++i) {
            ObjectReader element(array[i], PlaceOf(key).Element(i), kind);
            read(element);
            element.Finish();
        }
    }

    // Throws std::logic_error when a listed key was never asked for: the list is what the schema is compared with.
    void Finish() const;

  private:
    std::size_t IndexOf(const std::string& word, const std::string& key, const std::vector<std::string>& words) const;

    const Json& mValue;
    Place mPlace;
    std::set<std::string, std::less<>> mListed;
    std::set<std::string, std::less<>> mAsked;
};

std::set<std::string, std::less<>> SplitKeys(std::string_view keys);

// Each complains and answers something harmless when the value is of another kind.
std::string TextOf(const ObjectReader::Json& value, const Place& place);
std::int64_t NumberOf(const ObjectReader::Json& value, const Place& place, Range range);
bool FlagOf(const ObjectReader::Json& value, const Place& place);
std::vector<std::string> TextsOf(const ObjectReader::Json& value, const Place& place);
// Complains about a word that is not among the known ones: `there is no document "B"; did you mean "A"?`.
void CheckKnown(const std::string& word, const std::string& kind, const std::vector<std::string>& known,
                const Place& place);

}  // namespace simhost
