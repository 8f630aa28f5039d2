// The functions of the PluginCore and of the messaging library as scenarios speak of them: their arguments, what the
// plug-in always passes, and what an answer can hold.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace simhost {

enum class Library { kPluginCore, kMessaging };

struct CallRow {
    Library library;
    std::string_view entry;
    std::string_view arguments;  // as the record names them, separated by blanks
    std::string_view always;     // JSON: those that the plug-in always passes with the same value
    std::string_view answers;    // what an answer can hold besides "result" and "throw"
};

// Null when there is no such function.
const CallRow* FindCall(std::string_view entry);
std::vector<std::string> EntriesOf(Library library);

}  // namespace simhost
