// Turns a crash of the process into a report in words, so that a run never ends without a result.
#pragma once

#include <functional>
#include <string>

namespace simhost {

// From now on an exception that nobody handles, and abort(), call `report` with a description and end the process with
// exit code 1. For the rest of the process's life.
void InstallCrashGuard(std::function<void(const std::string& what)> report);

}  // namespace simhost
