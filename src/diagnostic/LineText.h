// The encodings of a line. The plug-in's texts are UTF-8, but for paths that go to narrow calls of Windows: those are
// in the ANSI code page, in which a name of a user may be no UTF-8. And a line that was cut at its greatest length may
// end within a character. Thread: any.
#pragma once

#include <span>
#include <string_view>

// The text as UTF-8: itself, but for a last character that is cut, or, when it is no UTF-8, what it is in the ANSI code
// page. `wide` and `utf8` are memory to work in, enough for three times the text and a zero. Lifetime: of all three.
std::string_view AsUtf8(std::string_view text, std::span<wchar_t> wide, std::span<char> utf8) noexcept;

// Terminated; empty when it does not fit. Lifetime: of `wide`.
const wchar_t* AsWide(std::string_view utf8, std::span<wchar_t> wide) noexcept;
