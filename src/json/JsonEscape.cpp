#include "json/JsonEscape.h"

namespace {

std::optional<int> HexDigitValue(wchar_t unit) noexcept {
    if (unit >= L'0' && unit <= L'9') {
        return unit - L'0';
    }
    if (unit >= L'a' && unit <= L'f') {
        return unit - L'a' + 10;
    }
    if (unit >= L'A' && unit <= L'F') {
        return unit - L'A' + 10;
    }
    return std::nullopt;
}

}  // namespace

std::optional<wchar_t> ReadJsonHexUnit(JsonTextCursor& cursor) noexcept {
    int unit = 0;
    for (int i = 0; i < 4; ++i) {
        if (cursor.AtEnd()) {
            return std::nullopt;
        }
        const std::optional<int> digit = HexDigitValue(cursor.TakeUnit());
        if (!digit) {
            return std::nullopt;
        }
        unit = unit * 16 + *digit;
    }
    return static_cast<wchar_t>(unit);
}
