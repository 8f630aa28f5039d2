// Paths that a scenario may write to: those in the folder of its run, and nothing else on the disk.
#pragma once

#include <string>
#include <string_view>

#include "simhost/scenario/ObjectReader.h"

namespace simhost {

// Why nothing may be written there, in words; empty when it may. `path` is relative to the folder, or absolute within
// it.
std::string WhyNotInRun(std::string_view path, std::string_view workFolder);

// Whether the path lies in the folder: folders are told apart whole, letters and slashes as Windows does.
bool IsInFolder(std::string_view path, std::string_view folder);
// Whether both name the same place in the run.
bool IsSameInRun(std::string_view path, std::string_view other, std::string_view workFolder);

// Complains when nothing may be written there.
void CheckPathInRun(const std::string& path, const Place& place);
// Reads such a path.
std::string NeedPathInRun(ObjectReader& reader, const std::string& key);

}  // namespace simhost
