// Texts of lines, as a reference.
#pragma once

#include <string>
#include <string_view>
#include <vector>

// What stands between line feeds; what is behind the last one is a line unless it is empty.
inline std::vector<std::string> LinesOf(std::string_view text) {
    std::vector<std::string> lines;
    std::string line;
    for (const char character : text) {
        if (character != '\n') {
            line += character;
            continue;
        }
        lines.push_back(line);
        line.clear();
    }
    if (!line.empty()) {
        lines.push_back(line);
    }
    return lines;
}

// The first line of `rest`, taken off with its end.
inline std::string TakeLine(std::string_view& rest) {
    const std::size_t end = rest.find('\n');
    const std::string line(rest.substr(0, end));
    rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    return line;
}
