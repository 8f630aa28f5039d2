// What can be said of a command line before anything is played: nothing of anybody's is written over, no run is kept in
// the place of another.
#pragma once

#include <string>

#include "simhost/launch/PlayCommand.h"
#include "simhost/launch/Selection.h"

namespace simhost {

// Whether it can be read and written where the options say. Throws std::runtime_error.
void CheckFilesOf(const PlayOptions& options);

// Whether the options fit what is played. Throws std::runtime_error.
void CheckSelection(const PlayOptions& options, const Selection& selection);

// The name of the folder in which a run is kept, when several are.
std::wstring FolderNameOf(const ScenarioFile& file, const std::string& caseName);

}  // namespace simhost
