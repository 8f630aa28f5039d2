// The values of a JSON text that hold no other values. Internal to json/.
// Thread: any.
#pragma once

#include <memory>
#include <optional>

#include "json/JsonText.h"
#include "json/JsonTextCursor.h"
#include "json/JsonValue.h"

// Each reads one token and leaves the cursor behind it. No result means that no such token stands there, or that it is
// malformed; the cursor is then at no particular place.

// A string, a keyword (in any letter case) or a number as a value with that key. May throw std::bad_alloc.
std::unique_ptr<JsonValue> ReadJsonScalar(JsonTextCursor& cursor, const JsonText& key);

// From the opening to the closing quote. Lifetime: of the text that the cursor moves in.
std::optional<JsonText> ReadJsonString(JsonTextCursor& cursor) noexcept;

// A number ends where its grammar ends: of "01" only the "0" is read.
std::optional<double> ReadJsonNumber(JsonTextCursor& cursor) noexcept;
