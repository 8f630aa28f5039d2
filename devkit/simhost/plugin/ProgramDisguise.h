// For a run in a process that was not started from the folder of the run: the plug-in takes it for the host's program
// all the same, and finds libraries beside that.
#pragma once

#include <windows.h>

#include <filesystem>

namespace simhost {

// Does nothing when this process was started from that file. A plug-in need not import what is replaced.
void DisguiseAs(const std::filesystem::path& program, HMODULE plugin);

}  // namespace simhost
