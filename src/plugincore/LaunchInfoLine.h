// The lines of the launch-info file. Needs no Windows.
//
// Thread: any.
#pragma once

#include <optional>
#include <string>
#include <string_view>

// The value of a line "key=value": what stands between the first '=' and the first carriage return, else the first line
// feed, else the end of the line, with nothing trimmed; it may be empty. Nothing when the line does not hold `key`
// anywhere (an empty key matches every line), has no '=', or ends before it.
std::optional<std::string> LaunchInfoLineValue(std::string_view line, std::string_view key);

// The value of the first line of the text that has one for `key`; nothing when no line has.
std::optional<std::string> FirstLaunchInfoValue(std::string_view text, std::string_view key);
