// The named values of a scenario: "${name}" in its texts.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string>
#include <vector>

#include "simhost/scenario/Place.h"

namespace simhost {

// What is the same for all scenarios of a run, as "${work}".
using Placeholders = std::map<std::string, std::string>;

// The unpaired surrogate U+D800 as texts of the host hold it; a scenario, which is UTF-8, cannot.
constexpr const char* kSurrogate = "\xED\xA0\x80";

class Values {
  public:
    using Json = nlohmann::ordered_json;

    // `own` is the object of the scenario's own values; they may use each other in any order. Complains about a name
    // that has a meaning already, one that is used in itself, and about unknown ones.
    Values(const Placeholders& placeholders, const Json& own, const Place& place);

    // A text that is nothing but "${name}" becomes the value; in a longer text a value that is no text becomes its
    // compact JSON. {"like": name, "set": {pointer: value}} becomes a changed copy of the value. What has no value
    // becomes null. The origins of the place's context know afterwards what was written where.
    Json FillIn(const Json& value, const Place& place);
    // The same for what was written nowhere.
    Json FillIn(const Json& value) { return FillIn(value, mPlace.Aside(mPlace)); }

  private:
    const Json* Named(const std::string& name, const Place& place);
    Json FilledMembers(const Json& value, const Place& place);
    Json FilledText(const std::string& text, const Place& place);
    void NoteCopy(const std::string& name, const Place& place) const;
    Json ChangedCopy(const Json& like, const Place& place);
    std::vector<std::string> Names() const;

    std::map<std::string, Json> mKnown;
    Json mWaiting;  // not resolved yet
    std::set<std::string> mResolving;
    Place mPlace;
};

}  // namespace simhost
