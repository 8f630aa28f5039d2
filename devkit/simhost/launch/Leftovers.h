// What an earlier run could not put back because its process was killed. To be called while no other run is under way.
#pragma once

#include <filesystem>

namespace simhost {

// Where runs take place that nobody names a folder for.
std::filesystem::path FolderOfRuns();

// Removes folders of earlier runs, and puts back launch-info files. Throws std::runtime_error.
void ClearLeftovers();

}  // namespace simhost
