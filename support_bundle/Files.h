// Reading and writing files as a whole, also such as another program is writing to.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

// The bytes; nothing when the file cannot be read.
std::optional<std::string> ReadFileOrNothing(const std::filesystem::path& path);

// Throws std::runtime_error, in UTF-8. A file that is there is replaced at once, when all is written.
void WriteFileWhole(const std::filesystem::path& path, std::string_view bytes);

// The text of a file: UTF-16 or UTF-8 with a mark, else UTF-8; each line that is none is in the ANSI code page.
std::wstring DecodedText(std::string_view bytes);
