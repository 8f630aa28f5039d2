// What the entries answer: read from the JSON file that the environment variable QUORVEL_PLUGINCORE_SCRIPT names.
//
//   {"HandleOpenExistingDocument": [{"text": "A, B"}, {"result": 301989888}], "PluginIsEnabled": [{"enabled": 0}]}
//
// An entry's answers are used in turn and the last one is repeated. An entry without answers, or a missing file,
// answers 0 and, for the flag, enabled. When the file's contents change, every entry begins again with its first
// answer.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

enum class Throw { kNothing, kForeignException, kCppException };

struct Answer {
    std::int32_t result = 0;
    std::optional<std::string> text;  // for the caller's buffer; nothing is written without it
    std::uint8_t enabled = 1;
    std::uint32_t port = 0;
    Throw throws = Throw::kNothing;
};

// The entry's next answer. An answer file that cannot be understood ends the process with a message: an answer made up
// in its place would hide the mistake.
Answer NextAnswer(const char* entry);
