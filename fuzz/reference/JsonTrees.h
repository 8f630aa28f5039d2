// The plug-in's JSON values, held against nlohmann's and against each other.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string_view>

#include "fuzz/reference/StrictJson.h"
#include "json/JsonValue.h"

// Requires that the parser took what nlohmann's reader takes of the strict text, and nothing else. `value` is what the
// parser made of `utf8`, the text as it was, or null.
void RequireTheSameAsNlohmann(const JsonValue* value, std::string_view utf8);

// Requires that nlohmann's reader, too, reads the value's written text as this value; that the text read again is this
// value; and that writing is then a fixed point. `textSize` is that of the text that the value was read from.
void RequireRoundTrip(const JsonValue& value, std::size_t textSize);
