#include "json/JsonWriter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <utility>

#include "json/JsonNumberText.h"

namespace {

using namespace std::string_view_literals;

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

// Takes what a text consists of and counts for how many units there should be room: as if each unit of a string had a
// backslash and a number were the longest one. To look at the units would take as long as to write them; should a
// string be full of control units, the text grows while it is written.
class Measurement {
  public:
    std::size_t Size() const noexcept { return mSize; }

    void AddUnit(wchar_t) noexcept { ++mSize; }
    void AddKeyword(std::wstring_view keyword) noexcept { mSize += keyword.size(); }
    void AddNumber(double) noexcept { mSize += JsonNumberText::kMaxSize; }
    void AddString(std::wstring_view units) noexcept { mSize += 2 + 2 * units.size(); }

  private:
    std::size_t mSize = 0;
};

// Takes the same and makes the text of it. The units are gathered in pieces: most of what comes is shorter than
// appending it to the text would be worth.
class Output {
  public:
    explicit Output(std::size_t size) { mText.reserve(size); }

    std::wstring TakeText() {
        Flush();
        return std::move(mText);
    }

    void AddUnit(wchar_t unit) {
        MakeRoom(1);
        *mNext++ = unit;
    }

    void AddKeyword(std::wstring_view keyword) {
        MakeRoom(keyword.size());
        mNext = std::copy(keyword.begin(), keyword.end(), mNext);
    }

    void AddNumber(double number) { AddKeyword(std::isfinite(number) ? JsonNumberText(number).View() : L"null"sv); }

    void AddString(std::wstring_view units) {
        AddUnit(L'"');
        while (!units.empty()) {
            const std::wstring_view part = units.substr(0, kPieceSize / kLongestEscape);
            MakeRoom(part.size() * kLongestEscape);
            mNext = WriteUnits(part, mNext);
            units.remove_prefix(part.size());
        }
        AddUnit(L'"');
    }

  private:
    static constexpr std::size_t kPieceSize = 516;

    void MakeRoom(std::size_t units) {
        if (static_cast<std::size_t>(std::end(mPiece) - mNext) < units) {
            Flush();
        }
    }

    void Flush();

    // Returns the end of what it has written. The backslash is written before it is known whether it stays, which takes
    // a sixth less time than to write it where it is needed.
    static wchar_t* WriteUnits(std::wstring_view units, wchar_t* next) noexcept {
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

    static wchar_t* WriteHexDigits(wchar_t unit, wchar_t* next) noexcept {
        constexpr std::wstring_view kDigits = L"0123456789ABCDEF";
        *next++ = L'0';
        *next++ = L'0';
        *next++ = kDigits[static_cast<std::size_t>(unit) / 16];
        *next++ = kDigits[static_cast<std::size_t>(unit) % 16];
        return next;
    }

    std::wstring mText;
    wchar_t mPiece[kPieceSize];
    wchar_t* mNext = mPiece;
};

// Not in the class: the compiler would put it into all that it is called from, and they would be calls themselves then.
void Output::Flush() {
    mText.append(mPiece, static_cast<std::size_t>(mNext - mPiece));
    mNext = mPiece;
}

// A scalar whole, of a container only the opening bracket.
template <typename Target>
void WriteBeginning(const JsonValue& value, Target& target) {
    switch (value.GetKind()) {
        case JsonValue::Kind::Null:
            return target.AddKeyword(L"null"sv);
        case JsonValue::Kind::String:
            return target.AddString(value.AsString());
        case JsonValue::Kind::Bool:
            return target.AddKeyword(value.AsBool() ? L"true"sv : L"false"sv);
        case JsonValue::Kind::Number:
            return target.AddNumber(value.AsNumber());
        case JsonValue::Kind::Array:
            return target.AddUnit(L'[');
        case JsonValue::Kind::Object:
            return target.AddUnit(L'{');
    }
}

// Nothing of a scalar.
template <typename Target>
void WriteEnd(const JsonValue& value, Target& target) {
    if (value.IsArray()) {
        target.AddUnit(L']');
    } else if (value.IsObject()) {
        target.AddUnit(L'}');
    }
}

// Ends the value and every container that ends with it, and returns what comes next: null when that is the root.
template <typename Target>
const JsonValue* WriteEnds(const JsonValue* value, const JsonValue& root, Target& target) {
    for (WriteEnd(*value, target); value != &root; WriteEnd(*value, target)) {
        if (const JsonValue* const sibling = value->NextSibling()) {
            return sibling;
        }
        value = value->ParentOfLast();
    }
    return nullptr;
}

// Writes a tree of any depth: from value to value, without a list of the containers that are open.
template <typename Target>
void WriteTree(const JsonValue& root, Target& target) {
    const JsonValue* value = &root;
    while (value != nullptr) {
        if (value != &root && value->IsMember()) {
            target.AddString(value->Key());
            target.AddUnit(L':');
        }
        WriteBeginning(*value, target);
        if (const JsonValue* const child = value->FirstChild()) {
            value = child;
            continue;
        }
        value = WriteEnds(value, root, target);
        if (value != nullptr) {
            target.AddUnit(L',');
        }
    }
}

}  // namespace

std::wstring WriteJson(const JsonValue* value) {
    if (value == nullptr) {
        return {};
    }
    Measurement measurement;
    WriteTree(*value, measurement);
    Output output(measurement.Size());
    WriteTree(*value, output);
    return output.TakeText();
}
