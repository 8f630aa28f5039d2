#include "diagnostic/TextWriter.h"

#include <windows.h>

#include <algorithm>
#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <iterator>

namespace {

bool ContinuesCharacter(char unit) { return (static_cast<unsigned char>(unit) & 0xC0U) == 0x80U; }

// Of a character that begins with it; 1 for what begins none.
std::size_t SizeOfCharacter(char lead) {
    const auto unit = static_cast<unsigned char>(lead);
    if (unit >= 0xF0) {
        return 4;
    }
    if (unit >= 0xE0) {
        return 3;
    }
    return unit >= 0xC0 ? 2 : 1;
}

}  // namespace

std::string_view WithoutCutCharacter(std::string_view text) noexcept {
    constexpr std::size_t kLongestCharacter = 4;
    std::size_t back = 1;
    while (back < std::min(kLongestCharacter, text.size()) && ContinuesCharacter(text[text.size() - back])) {
        ++back;
    }
    const bool isCut = !text.empty() && SizeOfCharacter(text[text.size() - back]) > back;
    return isCut ? text.substr(0, text.size() - back) : text;
}

TextWriter::TextWriter(std::span<char> memory) noexcept : mMemory(memory) { mMemory[0] = '\0'; }

void TextWriter::Append(std::string_view text) noexcept {
    const std::size_t room = mMemory.size() - 1 - mLength;
    const std::string_view part = text.size() <= room ? text : WithoutCutCharacter(text.substr(0, room));
    std::memcpy(mMemory.data() + mLength, part.data(), part.size());
    mLength += part.size();
    mMemory[mLength] = '\0';
}

void TextWriter::Append(char character, std::size_t count) noexcept {
    const std::size_t fitting = std::min(count, mMemory.size() - 1 - mLength);
    std::memset(mMemory.data() + mLength, character, fitting);
    mLength += fitting;
    mMemory[mLength] = '\0';
}

void TextWriter::AppendFormat(const char* format, ...) noexcept {
    va_list arguments;
    va_start(arguments, format);
    _vsnprintf_s(mMemory.data() + mLength, mMemory.size() - mLength, _TRUNCATE, format, arguments);
    va_end(arguments);
    mLength += std::strlen(mMemory.data() + mLength);
}

void TextWriter::AppendNumber(std::uint64_t number, int base) noexcept {
    char digits[64];
    const char* const end = std::to_chars(std::begin(digits), std::end(digits), number, base).ptr;
    Append(std::string_view(digits, static_cast<std::size_t>(end - digits)));
}

void TextWriter::Append(std::wstring_view text) noexcept {
    // Piece by piece: a unit becomes three bytes at most.
    constexpr std::size_t kPiece = 64;
    char utf8[kPiece * 3];
    while (!text.empty()) {
        std::size_t count = std::min(kPiece, text.size());
        // A pair is not torn apart.
        if (count < text.size() && IS_HIGH_SURROGATE(text[count - 1])) {
            --count;
        }
        count = std::max<std::size_t>(count, 1);
        const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(count), utf8,
                                             static_cast<int>(sizeof utf8), nullptr, nullptr);
        Append(std::string_view(utf8, static_cast<std::size_t>(std::max(size, 0))));
        text.remove_prefix(count);
    }
}

void TextWriter::AppendQuoted(const char* text) noexcept {
    if (text == nullptr) {
        Append("null");
        return;
    }
    const std::size_t size = std::strlen(text);
    AppendQuoted(text, size);
    if (size > kQuotedSize) {
        AppendFormat(" (%u bytes)", static_cast<unsigned>(size));
    }
}

void TextWriter::AppendQuoted(const char* text, std::size_t size) noexcept {
    // One byte more tells whether there is more.
    const std::size_t length = strnlen(text, std::min(size, kQuotedSize + 1));
    Append("\"");
    if (length > kQuotedSize) {
        AppendOnOneLine(WithoutCutCharacter({text, kQuotedSize}));
        Append("...");
    } else {
        AppendOnOneLine({text, length});
    }
    Append("\"");
}

void TextWriter::AppendOnOneLine(std::string_view text) noexcept {
    for (std::size_t done = 0; done < text.size();) {
        const std::size_t control =
            std::min(static_cast<std::size_t>(std::find_if(text.begin() + static_cast<std::ptrdiff_t>(done), text.end(),
                                                           [](char each) { return each >= 0 && each < ' '; }) -
                                              text.begin()),
                     text.size());
        Append(text.substr(done, control - done));
        if (control < text.size()) {
            switch (text[control]) {
                case '\n':
                    Append("\\n");
                    break;
                case '\r':
                    Append("\\r");
                    break;
                case '\t':
                    Append("\\t");
                    break;
                default:
                    AppendFormat("<%02X>", static_cast<unsigned>(text[control]));
            }
        }
        done = control + 1;
    }
}
