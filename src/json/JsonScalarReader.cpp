#include "json/JsonScalarReader.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>

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

// The four digits after "\u".
std::optional<wchar_t> ReadHexUnit(JsonTextCursor& cursor) noexcept {
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

// What stands after a backslash.
std::optional<wchar_t> ReadEscape(JsonTextCursor& cursor) noexcept {
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
            return ReadHexUnit(cursor);
        default:
            return std::nullopt;
    }
}

// ASCII alone is folded: to the runtime library's locale-dependent folding a "ſ" may be an "s".
wchar_t ToLowerAscii(wchar_t unit) noexcept {
    return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit - L'A' + L'a') : unit;
}

// `keyword` is in lower case. Compared over its own length: what follows is for the caller to judge.
bool TakeKeyword(JsonTextCursor& cursor, std::wstring_view keyword) noexcept {
    const std::wstring_view rest = cursor.Rest();
    if (rest.size() < keyword.size()) {
        return false;
    }
    for (std::size_t i = 0; i < keyword.size(); ++i) {
        if (ToLowerAscii(rest[i]) != keyword[i]) {
            return false;
        }
    }
    cursor.Skip(keyword.size());
    return true;
}

// A zero ends the integer part, so that no number has leading zeros.
std::optional<double> ReadIntegerPart(JsonTextCursor& cursor) noexcept {
    if (cursor.Take(L'0')) {
        return 0.0;
    }
    std::optional<int> digit = cursor.TakeDigit();
    if (!digit) {
        return std::nullopt;
    }
    double value = 0.0;
    for (; digit; digit = cursor.TakeDigit()) {
        value = value * 10.0 + *digit;
    }
    return value;
}

// Adds the fraction, if there is one, to `value`. Each weight is made anew from its power of ten, which is exact up to
// 10^22: repeated division of the weight itself would carry the rounding error of each step into the next.
bool ReadFraction(JsonTextCursor& cursor, double& value) noexcept {
    if (!cursor.Take(L'.')) {
        return true;
    }
    std::optional<int> digit = cursor.TakeDigit();
    if (!digit) {
        return false;
    }
    double power = 10.0;
    for (; digit; digit = cursor.TakeDigit()) {
        value += *digit * (1.0 / power);
        power *= 10.0;
    }
    return true;
}

// So many steps take every double to zero or to infinity (some 650 do), where more would change nothing. A text must
// not make the host wait for billions of them.
constexpr int kEnoughSteps = 1000;

// Applies the exponent, if there is one, one multiplication or division by ten at a time: a power function rounds
// differently.
bool ReadExponent(JsonTextCursor& cursor, double& value) noexcept {
    if (!cursor.Take(L'e') && !cursor.Take(L'E')) {
        return true;
    }
    const bool divide = cursor.Take(L'-');
    if (!divide) {
        cursor.Take(L'+');
    }
    std::optional<int> digit = cursor.TakeDigit();
    if (!digit) {
        return false;
    }
    int steps = 0;
    for (; digit; digit = cursor.TakeDigit()) {
        steps = std::min(steps * 10 + *digit, kEnoughSteps);
    }
    for (; steps > 0; --steps) {
        value = divide ? value / 10.0 : value * 10.0;
    }
    return true;
}

}  // namespace

std::optional<std::wstring> ReadJsonString(JsonTextCursor& cursor) {
    if (!cursor.Take(L'"')) {
        return std::nullopt;
    }
    std::wstring text;
    while (!cursor.AtEnd()) {
        const wchar_t unit = cursor.TakeUnit();
        if (unit == L'"') {
            return text;
        }
        if (unit != L'\\') {
            text += unit;
            continue;
        }
        const std::optional<wchar_t> escaped = ReadEscape(cursor);
        if (!escaped) {
            return std::nullopt;
        }
        text += *escaped;
    }
    return std::nullopt;
}

std::optional<double> ReadJsonNumber(JsonTextCursor& cursor) noexcept {
    const bool negative = cursor.Take(L'-');
    std::optional<double> value = ReadIntegerPart(cursor);
    if (!value || !ReadFraction(cursor, *value) || !ReadExponent(cursor, *value)) {
        return std::nullopt;
    }
    return negative ? -*value : *value;
}

std::unique_ptr<JsonValue> ReadJsonScalar(JsonTextCursor& cursor) {
    if (cursor.Rest().starts_with(L'"')) {
        std::optional<std::wstring> text = ReadJsonString(cursor);
        return text ? std::make_unique<JsonValue>(*std::move(text)) : nullptr;
    }
    if (TakeKeyword(cursor, L"true")) {
        return std::make_unique<JsonValue>(true);
    }
    if (TakeKeyword(cursor, L"false")) {
        return std::make_unique<JsonValue>(false);
    }
    if (TakeKeyword(cursor, L"null")) {
        return std::make_unique<JsonValue>();
    }
    const std::optional<double> number = ReadJsonNumber(cursor);
    return number ? std::make_unique<JsonValue>(*number) : nullptr;
}
