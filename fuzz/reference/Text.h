// UTF-8 and UTF-16 as a reference: written from the tables of the Unicode standard, and shares no code with the plug-in
// or its library.
//
// Each unit of the plug-in's wide strings is one 16-bit unit, also in the native build, where wchar_t has 32 bits and
// the upper half stays 0. The compiler's option for a 16-bit wchar_t is no way out: the functions of the C and C++
// libraries that std::wstring calls (wmemcpy, wcslen and the like) are compiled for 32 bits. The corpora, played again
// under Wine, show the same with 16.
#pragma once

#include <optional>
#include <string>
#include <string_view>

// The code points of UTF-8 text; nothing when it is ill-formed.
std::optional<std::u32string> CodePointsOf(std::string_view utf8);

// Nothing for an unpaired surrogate.
std::optional<std::string> ReferenceUtf8(std::wstring_view units);
std::optional<std::wstring> ReferenceUtf16(std::string_view utf8);

void AppendUtf8(char32_t codePoint, std::string& utf8);

// What a text is when nobody decodes it: a unit for each byte.
std::wstring Widened(std::string_view bytes);
