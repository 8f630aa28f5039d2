#include "plugincore/LaunchInfoLine.h"

#include <algorithm>

#include "support/TextLines.h"

std::optional<std::string> LaunchInfoLineValue(std::string_view line, std::string_view key) {
    // Anywhere in the line is intentional: launch-info files in the field are read so.
    if (line.find(key) == std::string_view::npos) {
        return std::nullopt;
    }
    const std::size_t equalSign = line.find('=');
    if (equalSign == std::string_view::npos) {
        return std::nullopt;
    }
    std::size_t end = line.find('\r');
    if (end == std::string_view::npos) {
        end = std::min(line.find('\n'), line.size());
    }
    if (end <= equalSign) {
        return std::nullopt;
    }
    return std::string(line.substr(equalSign + 1, end - equalSign - 1));
}

std::optional<std::string> FirstLaunchInfoValue(std::string_view text, std::string_view key) {
    for (std::string_view line; TakeLine(text, line);) {
        if (std::optional<std::string> value = LaunchInfoLineValue(line, key)) {
            return value;
        }
    }
    return std::nullopt;
}
