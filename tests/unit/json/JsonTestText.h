// Shorthands for tests that go from text to value and back.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "json/JsonParser.h"
#include "json/JsonWriter.h"

// The value of a text that must be valid: the test fails by an exception when it is not.
inline std::unique_ptr<JsonValue> Parsed(std::wstring_view text) {
    std::unique_ptr<JsonValue> value = ParseJson(text);
    if (!value) throw std::invalid_argument("the text does not parse");
    return value;
}

inline bool IsRefused(std::wstring_view text) { return ParseJson(text) == nullptr; }

// What a valid text looks like when it is written again.
inline std::wstring Rewritten(std::wstring_view text) { return WriteJson(Parsed(text).get()); }

// The payload of a text that must be a string, quotes and all, or a number.
inline std::wstring ParsedString(std::wstring_view text) { return std::wstring(Parsed(text)->AsString()); }

inline double ParsedNumber(std::wstring_view text) { return Parsed(text)->AsNumber(); }

// The elements of an array or the members of an object.
inline std::vector<const JsonValue*> ChildrenOf(const JsonValue& value) {
    std::vector<const JsonValue*> children;
    for (const JsonValue& child : value.IsArray() ? value.AsArray() : value.AsObject()) children.push_back(&child);
    return children;
}

// A member that must be there: the test fails by an exception when it is not.
inline const JsonValue& MemberOf(const JsonValue& object, std::wstring_view key) {
    const JsonValue* const member = object.FindMember(key);
    if (!member) throw std::out_of_range("the object has no such member");
    return *member;
}

// `count` copies of `text`, one after the other.
inline std::wstring Repeated(std::wstring_view text, std::size_t count) {
    std::wstring all;
    all.reserve(text.size() * count);
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
}
