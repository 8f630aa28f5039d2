#include "json/JsonScalarReader.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "json/JsonEscape.h"

namespace {

using namespace std::string_view_literals;

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

std::optional<JsonText> ReadJsonString(JsonTextCursor& cursor) noexcept {
    if (!cursor.Take(L'"')) {
        return std::nullopt;
    }
    const std::wstring_view text = cursor.Rest();
    std::size_t unitsOfEscapes = 0;
    for (cursor.SkipPlainUnits(); !cursor.AtEnd(); cursor.SkipPlainUnits()) {
        const std::size_t size = text.size() - cursor.Rest().size();
        if (cursor.TakeUnit() == L'"') {
            return JsonText(text.substr(0, size), size - unitsOfEscapes);
        }
        if (!ReadJsonEscape(cursor)) {
            return std::nullopt;
        }
        unitsOfEscapes += text.size() - cursor.Rest().size() - size - 1;
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

std::unique_ptr<JsonValue> ReadJsonScalar(JsonTextCursor& cursor, const JsonText& key) {
    if (cursor.Rest().starts_with(L'"')) {
        const std::optional<JsonText> text = ReadJsonString(cursor);
        return text ? JsonValue::MakeString(*text, key) : nullptr;
    }
    if (TakeKeyword(cursor, L"true"sv)) {
        return JsonValue::MakeBool(true, key);
    }
    if (TakeKeyword(cursor, L"false"sv)) {
        return JsonValue::MakeBool(false, key);
    }
    if (TakeKeyword(cursor, L"null"sv)) {
        return JsonValue::MakeNull(key);
    }
    const std::optional<double> number = ReadJsonNumber(cursor);
    return number ? JsonValue::MakeNumber(*number, key) : nullptr;
}
