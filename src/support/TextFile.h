// Text files, opened in the C runtime's text mode: "\r\n" becomes "\n", and a Control-Z ends the text. Like any file
// that the C runtime opens for reading, they may be open elsewhere at the same time.
// Thread: any.
#pragma once

#include <optional>
#include <string>

// The whole text, in whatever encoding the file has; nothing when the file cannot be opened. When it cannot be read to
// its end: the lines that were read whole.
std::optional<std::string> ReadTextFile(const wchar_t* path);

// The same for a narrow path, in the ANSI code page.
std::optional<std::string> ReadTextFile(const char* path);
