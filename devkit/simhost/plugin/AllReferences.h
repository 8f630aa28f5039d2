// Thread: main.
#pragma once

#include <filesystem>

namespace simhost {

// Frees the library of that file as often as it is held, so that it is gone. Answers how often that was: a plug-in
// holds itself, and holds what it has loaded, on purpose. Throws std::runtime_error when it stays.
int FreeAllReferences(const std::filesystem::path& file);

}  // namespace simhost
