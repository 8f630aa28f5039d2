// What a step can do: one row for each verb.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simhost/scenario/ObjectReader.h"
#include "simhost/scenario/Step.h"

namespace simhost {

struct Verb {
    std::string_view name;  // the value of "do"
    std::string_view keys;  // what only this verb has, separated by blanks
    // Asks for each of the keys.
    Action (*read)(ObjectReader& reader);
    // Sends to the plug-in what the step says, and notes the answer. Throws HostLost.
    void (*perform)(const Action& action, Performance& performance);
    bool reachesPlugin = true;  // and so has something to expect
    bool needsPlugin = true;    // cannot be performed when the plug-in has been unloaded
    bool canBeNested = true;    // within another message
};

std::span<const Verb> AllVerbs();

// Null when there is no such verb.
const Verb* FindVerb(std::string_view name);
std::vector<std::string> VerbNames();

// All keys that a step of the verb can have, separated by blanks.
std::string KeysOf(const Verb& verb, bool nested);

}  // namespace simhost
