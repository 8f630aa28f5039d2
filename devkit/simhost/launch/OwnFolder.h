// Folders that a run may empty and remove: those that are new, empty, or made by an earlier run, which has left a mark
// in them. Whatever else lies on the disk is somebody's work.
#pragma once

#include <filesystem>

namespace simhost {

// Throws std::runtime_error, in words, when the folder can be neither made nor emptied without loss.
void CheckIsOwnOrNew(const std::filesystem::path& folder);

// Makes the folder, or empties it, and marks it. Throws as above, having removed nothing.
void TakeFolder(const std::filesystem::path& folder);

// Makes the folder when there is none, and marks it; leaves what lies in it. Throws as above.
void ShareFolder(const std::filesystem::path& folder);

// Removes the folder when it carries the mark. Throws std::runtime_error when that cannot be done.
void RemoveOwnFolder(const std::filesystem::path& folder);

}  // namespace simhost
