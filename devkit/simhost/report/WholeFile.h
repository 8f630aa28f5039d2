#pragma once

#include <filesystem>
#include <string>

namespace simhost {

// Writes the file anew. Throws std::runtime_error when not all of it arrives: a full disk, a folder that is gone.
void WriteWholeFile(const std::filesystem::path& file, const std::string& bytes);

}  // namespace simhost
