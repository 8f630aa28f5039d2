// The values of a JSON text that hold no other values. Internal to json/.
// Thread: any.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "json/JsonTextCursor.h"
#include "json/JsonValue.h"

// Each reads one token and leaves the cursor behind it. No result means that no such token stands there, or that it is
// malformed; the cursor is then at no particular place. All but ReadJsonNumber may throw std::bad_alloc.

// A string, a keyword (in any letter case) or a number as a value.
std::unique_ptr<JsonValue> ReadJsonScalar(JsonTextCursor& cursor);

// From the opening to the closing quote. Each \u escape gives one unit; surrogate pairs are not combined.
std::optional<std::wstring> ReadJsonString(JsonTextCursor& cursor);

// A number ends where its grammar ends: of "01" only the "0" is read.
std::optional<double> ReadJsonNumber(JsonTextCursor& cursor) noexcept;
