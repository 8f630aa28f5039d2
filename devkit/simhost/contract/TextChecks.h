// What is looked at in a text that a library gives: its bytes, and whether it is JSON of the promised shape.
//
// Thread: any.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace simhost::contract {

bool IsUtf8(std::string_view text);

// In quotes, and short; bytes that are not UTF-8 or control characters as in "<E4>".
std::string Printable(std::string_view text);

enum class ShapeFaultKind { kNoJson, kMemberMissing, kOtherKind };

struct ShapeFault {
    ShapeFaultKind kind;
    std::string text;  // what is wrong, in words
};
// The first of each kind; empty when the shape is as promised.
std::vector<ShapeFault> FaultsOfMenus(const std::string& json);
std::vector<ShapeFault> FaultsOfSettings(const std::string& json);

}  // namespace simhost::contract
