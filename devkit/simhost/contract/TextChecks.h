// What is looked at in a text that a library gives: its bytes, and whether it is JSON of the promised shape.
//
// Thread: any.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace simhost::contract {

bool IsUtf8(std::string_view text);

// In quotes, and short; bytes that are not UTF-8 or control characters as in "<E4>".
std::string Printable(std::string_view text);

// In words what is wrong with the shape; nothing when it is as promised. The text must be JSON.
struct ShapeFault {
    bool isJson;
    std::string text;
};
std::optional<ShapeFault> FaultOfMenus(const std::string& json);
std::optional<ShapeFault> FaultOfSettings(const std::string& json);

}  // namespace simhost::contract
