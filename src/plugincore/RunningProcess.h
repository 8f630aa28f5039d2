#pragma once

#include <cstdint>
#include <string>

// Finds the running process with the lowest identifier whose executable has the base name `name` (".exe" may be left
// out, case does not count) and stores the executable's folder, ending in a backslash, in `outDirectory` (ANSI).
// Returns 0, or kLookupNotFound when there is none, the process list cannot be read or the path of the first match
// cannot be; `outDirectory` is then left alone.
//
// Intentional: a process that was started through a link is known by the name of the file behind it, and is not found
// by that of the link. To see it, every process would have to be opened. Thread: main.
std::int32_t GetPathToRunningProcessExe(const std::string& name, std::string& outDirectory);
