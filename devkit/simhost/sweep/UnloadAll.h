// Thread: main.
#pragma once

#include <filesystem>

namespace simhost::sweep {

// Frees all libraries of this process that lie in the folder or below it, however often each is held: plug-ins first.
// Throws std::runtime_error when one stays.
void UnloadAllOf(const std::filesystem::path& folder);

}  // namespace simhost::sweep
