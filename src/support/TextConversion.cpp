#include "support/TextConversion.h"

#include <utf8cpp/utf8.h>

#include <cstdint>
#include <iterator>

std::string Utf8FromUtf16(std::wstring_view utf16) {
    std::string utf8;
    utf8.reserve(utf16.size());
    utf8::utf16to8(utf16.begin(), utf16.end(), std::back_inserter(utf8));
    return utf8;
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
    utf16.reserve(utf8.size());
    utf8::utf8to16(utf8.begin(), utf8.end(), std::back_inserter(utf16));
    return utf16;
}
