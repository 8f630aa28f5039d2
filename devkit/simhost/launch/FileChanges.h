// Changes to files, which say in words of ours what went wrong: all throw std::runtime_error.
#pragma once

#include <filesystem>

namespace simhost {

// With all folders above; harmless when it is there.
void MakeFolder(const std::filesystem::path& folder);
// Harmless when there is none.
void RemoveFile(const std::filesystem::path& file);
// In the place of what lies there, if it is a file.
void MoveFileTo(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace simhost
