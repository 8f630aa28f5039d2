// Says what a file is that cannot be used as a library, where Windows gives a number.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

namespace simhost {

// Why a 64-bit program cannot load the file, in words that follow its name: "is empty", "is a text". Empty when nothing
// in the file speaks against it. Runs nothing of it.
std::string WhyNoLibrary(const std::filesystem::path& file);

// Why Windows did not load a file against which nothing speaks, by the code that it gave: a library or a function that
// it needs is missing, or it refused. In the process in which it was tried.
// `folder`: where Windows was told to look first for what it needs; empty for the program's own.
std::string WhyNotLoaded(const std::filesystem::path& file, DWORD error, const std::filesystem::path& folder = {});

}  // namespace simhost
