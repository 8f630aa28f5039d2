// Conversions between the texts of Windows and of files.
//
// Thread: any.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace simhost {

std::wstring Wide(std::string_view utf8);
std::string Utf8(std::wstring_view wide);

// Nothing when the bytes are not valid in the code page.
std::optional<std::u16string> Utf16(std::string_view bytes, unsigned codePage);
std::string Utf8(std::u16string_view units);

// As the host holds its texts: file names of Windows are any units. An unpaired surrogate is written as three bytes, as
// if it were a character; what else is no UTF-8 makes the whole text empty.
std::u16string HostUnits(std::string_view utf8);

// Every occurrence of `from` in `text` becomes `to`; an empty `from` changes nothing.
std::string ReplaceAll(std::string text, std::string_view from, std::string_view to);

// The text as it stands between the quotes of a JSON text that escapes "/" as well.
std::string AsJsonText(std::string_view utf8);

std::string FourCharacters(unsigned code);

}  // namespace simhost
