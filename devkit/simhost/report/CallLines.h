// A recorded call as the transcript shows it.
#pragma once

#include <string>
#include <vector>

#include "simhost/checks/PluginCoreCalls.h"

namespace simhost {

// One line for the entry, its numbers and its answer, and one for each text.
std::vector<std::string> LinesOf(const PluginCoreCall& call);

}  // namespace simhost
