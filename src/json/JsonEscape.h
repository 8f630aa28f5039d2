// What stands behind a backslash in a JSON string. Internal to json/.
// Thread: any.
#pragma once

#include <optional>

#include "json/JsonTextCursor.h"

// The four digits of an escape behind its letter u, and the cursor behind them; nothing when they are none.
std::optional<wchar_t> ReadJsonHexUnit(JsonTextCursor& cursor) noexcept;

// The unit that the escape stands for, and the cursor behind it; nothing when it is none. Each \u escape gives one
// unit; surrogate pairs are not combined.
inline std::optional<wchar_t> ReadJsonEscape(JsonTextCursor& cursor) noexcept {
    if (cursor.AtEnd()) {
        return std::nullopt;
    }
    const wchar_t escape = cursor.TakeUnit();
    switch (escape) {
        case L'"':
        case L'\\':
        case L'/':
            return escape;
        case L'b':
            return L'\b';
        case L'f':
            return L'\f';
        case L'n':
            return L'\n';
        case L'r':
            return L'\r';
        case L't':
            return L'\t';
        case L'u':
            return ReadJsonHexUnit(cursor);
        default:
            return std::nullopt;
    }
}
