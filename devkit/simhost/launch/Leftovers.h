// What an earlier run could not put back because its process was killed.
#pragma once

#include <filesystem>

namespace simhost {

// Where runs take place that nobody names a folder for.
std::filesystem::path FolderOfRuns();

// Waits until no other run is under way on this desktop (see DesktopLock.h) and keeps others waiting from then on; then
// removes folders of earlier runs, and puts back launch-info files. Once for each process. Throws std::runtime_error,
// Cancelled.
void BeginRuns(bool waits);

}  // namespace simhost
