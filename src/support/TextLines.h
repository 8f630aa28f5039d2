// Thread: any.
#pragma once

#include <algorithm>
#include <string_view>

// Takes the next line off the text and stores it without its line feed; the last line may lack one. False at the end of
// the text.
inline bool TakeLine(std::string_view& text, std::string_view& line) {
    if (text.empty()) {
        return false;
    }
    line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return true;
}
