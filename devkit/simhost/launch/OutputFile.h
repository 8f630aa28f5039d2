// Whether a file that an option names can be written: said before anything is played.
// An empty path is none that was asked for.
#pragma once

#include <filesystem>
#include <string>

namespace simhost {

// Throws std::runtime_error, which begins with the option's name.
void CheckCanBeWritten(const std::string& option, const std::filesystem::path& named);

// And whether a file that is there already is one of its kind, which holds the mark, or empty: it is written anew.
void CheckOutputFile(const std::string& option, const std::filesystem::path& named, const std::string& mark,
                     const std::string& kind);

}  // namespace simhost
