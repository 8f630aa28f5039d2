#include "fuzz/reference/Text.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace {

// What a sequence may begin with, its length, and the range that its second byte must lie in.
struct Form {
    unsigned char first;
    unsigned char last;
    std::size_t length;
    unsigned char secondFirst;
    unsigned char secondLast;
};
constexpr std::array<Form, 9> kForms = {{{0x00, 0x7F, 1, 0x00, 0x00},
                                         {0xC2, 0xDF, 2, 0x80, 0xBF},
                                         {0xE0, 0xE0, 3, 0xA0, 0xBF},
                                         {0xE1, 0xEC, 3, 0x80, 0xBF},
                                         {0xED, 0xED, 3, 0x80, 0x9F},
                                         {0xEE, 0xEF, 3, 0x80, 0xBF},
                                         {0xF0, 0xF0, 4, 0x90, 0xBF},
                                         {0xF1, 0xF3, 4, 0x80, 0xBF},
                                         {0xF4, 0xF4, 4, 0x80, 0x8F}}};

const Form* FormOf(unsigned char first) {
    for (const Form& form : kForms) {
        if (first >= form.first && first <= form.last) {
            return &form;
        }
    }
    return nullptr;
}

// The sequence at the beginning of `rest`, taken off; nothing when it is ill-formed.
std::optional<char32_t> TakeCodePoint(std::string_view& rest) {
    const auto byte = [&rest](std::size_t i) { return static_cast<unsigned char>(rest[i]); };
    const Form* const form = FormOf(byte(0));
    if (form == nullptr || rest.size() < form->length) {
        return std::nullopt;
    }
    if (form->length > 1 && (byte(1) < form->secondFirst || byte(1) > form->secondLast)) {
        return std::nullopt;
    }
    // The first byte's payload: 7, 5, 4 or 3 bits.
    char32_t codePoint = form->length == 1 ? byte(0) : byte(0) & (0x7Fu >> form->length);
    for (std::size_t i = 1; i < form->length; ++i) {
        if (byte(i) < 0x80 || byte(i) > 0xBF) {
            return std::nullopt;
        }
        codePoint = codePoint * 64 + (byte(i) - 0x80u);
    }
    rest.remove_prefix(form->length);
    return codePoint;
}

}  // namespace

std::optional<std::u32string> CodePointsOf(std::string_view utf8) {
    std::u32string codePoints;
    while (!utf8.empty()) {
        const std::optional<char32_t> codePoint = TakeCodePoint(utf8);
        if (!codePoint) {
            return std::nullopt;
        }
        codePoints += *codePoint;
    }
    return codePoints;
}

void AppendUtf8(char32_t codePoint, std::string& utf8) {
    const auto tail = [&](int shift) { utf8 += static_cast<char>(0x80u | ((codePoint >> shift) & 0x3Fu)); };
    if (codePoint < 0x80) {
        utf8 += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        utf8 += static_cast<char>(0xC0u | (codePoint >> 6));
        tail(0);
    } else if (codePoint < 0x10000) {
        utf8 += static_cast<char>(0xE0u | (codePoint >> 12));
        tail(6);
        tail(0);
    } else {
        utf8 += static_cast<char>(0xF0u | (codePoint >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

std::optional<std::string> ReferenceUtf8(std::wstring_view units) {
    std::string utf8;
    for (std::size_t i = 0; i < units.size(); ++i) {
        const auto unit = static_cast<char32_t>(units[i]);
        if (unit < 0xD800 || unit > 0xDFFF) {
            AppendUtf8(unit, utf8);
            continue;
        }
        const char32_t next = i + 1 < units.size() ? static_cast<char32_t>(units[i + 1]) : 0;
        if (unit > 0xDBFF || next < 0xDC00 || next > 0xDFFF) {
            return std::nullopt;
        }
        AppendUtf8(0x10000 + (unit - 0xD800) * 0x400 + (next - 0xDC00), utf8);
        ++i;
    }
    return utf8;
}

std::optional<std::wstring> ReferenceUtf16(std::string_view utf8) {
    const std::optional<std::u32string> codePoints = CodePointsOf(utf8);
    if (!codePoints) {
        return std::nullopt;
    }
    std::wstring units;
    for (const char32_t codePoint : *codePoints) {
        if (codePoint < 0x10000) {
            units += static_cast<wchar_t>(codePoint);
        } else {
            units += static_cast<wchar_t>(0xD800 + (codePoint - 0x10000) / 0x400);
            units += static_cast<wchar_t>(0xDC00 + (codePoint - 0x10000) % 0x400);
        }
    }
    return units;
}

std::wstring Widened(std::string_view bytes) {
    std::wstring units;
    for (const char byte : bytes) {
        units += static_cast<wchar_t>(static_cast<unsigned char>(byte));
    }
    return units;
}
