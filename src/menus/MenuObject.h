// Searching the PluginCore's menu description. Needs neither host nor PluginCore.
//
// The root is one item or an array of items. An item is an object with the members "id" and "title" (strings),
// "enabled" and "checked" (booleans) and "child" (an array of items; anything else stands for none).
// Thread: any.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "json/JsonValue.h"

// Finds the first item, each one before its children, whose member `key` is the string `value` (UTF-8); stores it in
// `out`, where it stays the root's, and returns 0. Else leaves `out` alone and returns kLookupNotFound, also for a null
// root (a text that did not parse), or kRootNotObject for a root that is neither object nor array. An item whose `key`
// is no string is passed over with its children. Throws std::out_of_range when an item that it meets lacks `key` or
// "child", and what MenuObjectMember and Utf8FromUtf16 throw.
std::int32_t GetMenuObject(const JsonValue* root, std::wstring_view key, const std::string& value,
                           const JsonValue** out);

// A member of an item. Throws std::out_of_range when the item lacks it: the description is then not worth trusting.
const JsonValue& MenuObjectMember(const JsonValue& object, std::wstring_view key);
