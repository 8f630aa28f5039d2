// The launch-info file: a reader that goes through it character by character, as the rules are told.
#include <optional>

#include "fuzz/reference/Lines.h"
#include "fuzz/Targets.h"
#include "plugincore/LaunchInfoLine.h"

namespace {

bool Holds(const std::string& line, const std::string& key) {
    for (std::size_t begin = 0; begin + key.size() <= line.size(); ++begin) {
        if (line.compare(begin, key.size(), key) == 0) {
            return true;
        }
    }
    return false;
}

std::optional<std::string> ValueOf(const std::string& line) {
    const char end = Holds(line, "\r") ? '\r' : '\n';
    std::optional<std::string> value;
    for (const char character : line) {
        if (character == end) {
            break;
        }
        if (value) {
            *value += character;
        } else if (character == '=') {
            value.emplace();
        }
    }
    return value;
}

}  // namespace

void FuzzLaunchInfo(std::string_view bytes) {
    const std::string key = TakeLine(bytes);
    // All of it as one line, line feeds and all.
    const std::string whole(bytes);
    Require(LaunchInfoLineValue(whole, key) == (Holds(whole, key) ? ValueOf(whole) : std::nullopt),
            "launch-info: the value of a line");

    std::optional<std::string> expected;
    for (const std::string& line : LinesOf(bytes)) {
        if (Holds(line, key) && !expected) {
            expected = ValueOf(line);
        }
    }
    Require(FirstLaunchInfoValue(bytes, key) == expected, "launch-info: the value of the file");
}
