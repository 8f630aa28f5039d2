#include "support/TextConversion.h"

#include <utf8cpp/utf8.h>

#include <cstdint>
#include <iterator>

#include "support/AsciiRuns.h"

namespace {

// Behind the characters that are not ASCII at the beginning, and one further: what is wrong with the last of them shows
// in what follows it.
template <class Unit>
const Unit* EndOfOthers(const Unit* from, const Unit* end) {
    while (from != end && !IsAscii(*from)) {
        ++from;
    }
    return from == end ? end : from + 1;
}

// The bytes that the text becomes. Of ill-formed text it is at least what it becomes up to where it is refused.
template <class Unit>
std::size_t Utf8Size(const Unit* unit, const Unit* end) {
    std::size_t size = 0;
    while (unit != end) {
        if (BeginsWithAsciiBlock(unit, end)) {
            size += kAsciiBlock;
            unit += kAsciiBlock;
            continue;
        }
        const auto code = static_cast<std::uint16_t>(*unit++);
        const bool isHalfOfAPair = code >= 0xD800 && code <= 0xDFFF;  // of four bytes
        size += code < 0x80 ? 1 : code < 0x800 || isHalfOfAPair ? 2 : 3;
    }
    return size;
}

template <class Unit>
std::string Utf8FromUnits(const Unit* unit, const Unit* end) {
    std::string utf8(Utf8Size(unit, end), '\0');
    for (auto copied = CopyAscii(unit, end, utf8.data()); copied.from != end;) {
        const Unit* const next = EndOfOthers(copied.from, end);
        copied = CopyAscii(next, end, utf8::utf16to8(copied.from, next, copied.out));
    }
    return utf8;
}

}  // namespace

std::string Utf8FromUtf16(std::wstring_view utf16) { return Utf8FromUnits(utf16.data(), utf16.data() + utf16.size()); }

std::string Utf8FromUtf16(std::span<const std::uint16_t> utf16) {
    return Utf8FromUnits(utf16.data(), utf16.data() + utf16.size());
}

std::string Utf8FromWindowsText(std::wstring_view utf16) {
    constexpr char32_t kReplacement = 0xFFFD;
    std::string utf8;
    utf8.reserve(utf16.size());
    for (std::size_t i = 0; i < utf16.size(); ++i) {
        const std::uint32_t unit = utf16[i];
        const std::uint32_t next = i + 1 < utf16.size() ? utf16[i + 1] : 0;
        if (unit >= 0xD800 && unit <= 0xDBFF && next >= 0xDC00 && next <= 0xDFFF) {
            utf8::append(0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00), std::back_inserter(utf8));
            ++i;
        } else {
            const bool isUnpaired = unit >= 0xD800 && unit <= 0xDFFF;
            utf8::append(isUnpaired ? kReplacement : unit, std::back_inserter(utf8));
        }
    }
    return utf8;
}

std::wstring Utf16FromUtf8(std::string_view utf8) {
    std::wstring utf16;
    AssignUtf16FromUtf8(utf16, utf8);
    return utf16;
}

void AssignUtf16FromUtf8(std::wstring& utf16, std::string_view utf8) {
    // No character has more units than bytes.
    utf16.resize(utf8.size());
    const char* const end = utf8.data() + utf8.size();
    auto copied = CopyAscii(utf8.data(), end, utf16.data());
    while (copied.from != end) {
        const char* const next = EndOfOthers(copied.from, end);
        copied = CopyAscii(next, end, utf8::utf8to16(copied.from, next, copied.out));
    }
    utf16.resize(static_cast<std::size_t>(copied.out - utf16.data()));
}
