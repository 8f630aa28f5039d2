// Unloads libraries for good: a plug-in holds itself, and holds what it has loaded, on purpose.
//
// Thread: main.
#pragma once

#include <filesystem>

namespace simhost {

// Frees the library of that file as often as it is held, so that it is gone. Answers how often that was. Throws
// std::runtime_error when it stays.
int FreeAllReferences(const std::filesystem::path& file);

// The same for all libraries of this process that lie in the folder or below it: plug-ins first.
void FreeAllReferencesIn(const std::filesystem::path& folder);

}  // namespace simhost
