#include "json/JsonOutput.h"

#include <array>
#include <cmath>
#include <cstdint>

#include "json/JsonNumberText.h"

namespace {

// The letter behind the backslash of the unit's escape; 0 for units that are written as they are.
constexpr char EscapeLetter(std::size_t code) noexcept {
    switch (code) {
        case '"':
        case '/':  // optional in JSON; intentional, the bytes of a report are fixed
        case '\\':
            return static_cast<char>(code);
        case '\b':
            return 'b';
        case '\f':
            return 'f';
        case '\n':
            return 'n';
        case '\r':
            return 'r';
        case '\t':
            return 't';
        default:
            return code < 32 ? 'u' : '\0';
    }
}

// Of the units from 0 on; those behind have none.
constexpr auto kEscapeLetters = [] {
    std::array<char, 128> letters{};
    for (std::size_t code = 0; code < letters.size(); ++code) {
        letters[code] = EscapeLetter(code);
    }
    return letters;
}();

char LetterOf(wchar_t unit) noexcept {
    const auto code = static_cast<std::uint32_t>(unit);  // wchar_t is signed on some systems
    return code < kEscapeLetters.size() ? kEscapeLetters[code] : '\0';
}

// "\u00" and two digits
constexpr std::size_t kLongestEscape = 6;

wchar_t* WriteHexDigits(wchar_t unit, wchar_t* next) noexcept {
    constexpr std::wstring_view kDigits = L"0123456789ABCDEF";
    *next++ = L'0';
    *next++ = L'0';
    *next++ = kDigits[static_cast<std::size_t>(unit) / 16];
    *next++ = kDigits[static_cast<std::size_t>(unit) % 16];
    return next;
}

// Returns the end of what it has written. The backslash is written before it is known whether it stays, which takes a
// sixth less time than to write it where it is needed.
wchar_t* WriteUnits(std::wstring_view units, wchar_t* next) noexcept {
    for (const wchar_t unit : units) {
        const char letter = LetterOf(unit);
        *next = L'\\';
        next += letter != '\0' ? 1 : 0;
        *next++ = letter != '\0' ? static_cast<wchar_t>(letter) : unit;
        if (letter == 'u') {
            next = WriteHexDigits(unit, next);
        }
    }
    return next;
}

}  // namespace

void JsonOutput::AddNumber(double number) {
    AddKeyword(std::isfinite(number) ? JsonNumberText(number).View() : std::wstring_view(L"null"));
}

void JsonOutput::AddString(std::wstring_view units) {
    AddUnit(L'"');
    while (!units.empty()) {
        const std::wstring_view part = units.substr(0, kPieceSize / kLongestEscape);
        MakeRoom(part.size() * kLongestEscape);
        mNext = WriteUnits(part, mNext);
        units.remove_prefix(part.size());
    }
    AddUnit(L'"');
}

void JsonOutput::Flush() {
    mText.append(mPiece, static_cast<std::size_t>(mNext - mPiece));
    mNext = mPiece;
}
