// JSON values to JSON text.
// Thread: any.
#pragma once

#include <string>

#include "json/JsonValue.h"

// The value's text with no whitespace in it; members stand in key order. A null pointer gives the empty text.
//
// Numbers have up to 15 significant digits, in the "C" locale's form whatever locale is set; one that is not finite is
// written as null. Of the units of a string only quote, slash, backslash and those below 32 are escaped: text that is
// not ASCII comes out as it is. Throws std::bad_alloc.
std::wstring WriteJson(const JsonValue* value);
