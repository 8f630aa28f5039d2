// JSON text to JSON values.
// Thread: any.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "json/JsonValue.h"

// The value that the whole text stands for, owned by the caller; null on any error in the text. Nesting is limited by
// memory alone; when that runs out std::bad_alloc is thrown and nothing is left behind.
//
// Intentional leniencies, which the PluginCore relies on: the keywords true, false and null are taken in any letter
// case, a string may hold control characters as they are, and a number too large for a double becomes infinite. Of
// members with equal keys the last one wins; the others are deleted. A NUL unit is an ordinary character: kept inside a
// string, an error elsewhere.
std::unique_ptr<JsonValue> ParseJson(std::wstring_view text);

// The same for narrow text in the encoding of the current locale, converted by the runtime library; null also when that
// conversion fails. A NUL byte ends the text. No UTF-8 is decoded: in the "C" locale every byte becomes the unit of the
// same value. UTF-8 text that is not pure ASCII has to be converted by the caller and given to ParseJson.
std::unique_ptr<JsonValue> ParseNarrowJson(const std::string& text);
