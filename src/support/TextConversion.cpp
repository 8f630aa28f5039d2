#include "support/TextConversion.h"

#include <utf8cpp/utf8.h>

#include <iterator>

std::string Utf8FromUtf16(std::wstring_view utf16) {
    std::string utf8;
    utf8.reserve(utf16.size());
    utf8::utf16to8(utf16.begin(), utf16.end(), std::back_inserter(utf8));
    return utf8;
}

std::wstring Utf16FromUtf8(std::string_view utf8) {
    std::wstring utf16;
    utf16.reserve(utf8.size());
    utf8::utf8to16(utf8.begin(), utf8.end(), std::back_inserter(utf16));
    return utf16;
}
