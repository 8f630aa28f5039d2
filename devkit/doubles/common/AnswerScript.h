// What the entries of a substitute library answer: read from the JSON file that the library's environment variable
// names.
//
//   {"HandleOpenExistingDocument": [{"text": "A, B"}, {"result": 301989888}], "PluginIsEnabled": [{"enabled": 0}]}
//
// An entry's answers are used in turn and the last one is repeated. An entry without answers, or a missing file,
// answers as if nothing was said. When the file's contents change, every entry begins again with its first answer.
#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <string>

enum class Throw { kNothing, kForeignException, kCppException };

// What every entry of every library can do.
struct BasicAnswer {
    std::int32_t result = 0;
    Throw throws = Throw::kNothing;
};

// Takes a key that only answers of this library have; false when it does not know it either.
using OwnKeyReader = std::function<bool(const std::string& key, const nlohmann::json& value)>;

// The entry's next answer. An answer file that cannot be understood ends the process with a message: an answer made up
// in its place would hide the mistake.
BasicAnswer NextBasicAnswer(const char* entry, const OwnKeyReader& readOwnKey);
