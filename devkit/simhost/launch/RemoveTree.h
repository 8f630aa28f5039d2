// Removes files and folders without leaving the folder: a link to another place is removed itself, never what it leads
// to.
#pragma once

#include <filesystem>

namespace simhost {

// All that lies in the folder. Throws std::runtime_error, naming what cannot be removed.
void RemoveContents(const std::filesystem::path& folder);
// The folder too. Nothing happens when there is none.
void RemoveTree(const std::filesystem::path& folder);

bool IsLink(const std::filesystem::path& path);

}  // namespace simhost
