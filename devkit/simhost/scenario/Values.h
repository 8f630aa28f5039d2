// The named values of a scenario: "${name}" in its texts.
#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

namespace simhost {

// What is the same for all scenarios of a run, as "${work}".
using Placeholders = std::map<std::string, std::string>;

class Values {
  public:
    using Json = nlohmann::ordered_json;

    // `own` is the object of the scenario's own values; they may use each other in any order. Throws ScenarioError for
    // a name that has a meaning already, one that is used in itself, and for unknown ones.
    Values(const Placeholders& placeholders, const Json& own, const std::string& place);

    // A text that is nothing but "${name}" becomes the value; in a longer text a value that is no text becomes its
    // compact JSON. {"like": name, "set": {pointer: value}} becomes a changed copy of the value.
    Json FillIn(const Json& value, const std::string& place) const;

  private:
    const Json& Named(const std::string& name, const std::string& place);
    template <class Lookup>
    static Json Filled(const Json& value, const std::string& place, const Lookup& lookup);
    template <class Lookup>
    static Json ChangedCopy(const Json& like, const std::string& place, const Lookup& lookup);

    std::map<std::string, Json> mKnown;
    Json mWaiting;  // not resolved yet
    std::set<std::string> mResolving;
    std::string mPlace;
};

}  // namespace simhost
