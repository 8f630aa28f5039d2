// Between UTF-8, which every narrow string of the plug-in is, and the UTF-16 of Windows and the JSON values. The strict
// ones throw utfcpp's exceptions for ill-formed text: utf8::invalid_utf8, utf8::not_enough_room,
// utf8::invalid_code_point, utf8::invalid_utf16.
// Thread: any.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

// Each takes one block of the heap, or none for a short text.
std::string Utf8FromUtf16(std::wstring_view utf16);
std::string Utf8FromUtf16(std::span<const std::uint16_t> utf16);

// For texts that Windows gives: a file name or a window title may hold an unpaired surrogate, which becomes U+FFFD.
std::string Utf8FromWindowsText(std::wstring_view utf16);

std::wstring Utf16FromUtf8(std::string_view utf8);
// Takes the place of what `utf16` held, and its memory where that is enough.
void AssignUtf16FromUtf8(std::wstring& utf16, std::string_view utf8);
