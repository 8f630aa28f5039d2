// A recorded call as the transcript shows it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "simhost/checks/PluginCoreCalls.h"

namespace simhost {

// One line for the entry, its numbers and its answer, and lines for each text. `shorten` makes texts shorter first, so
// that the lines are broken alike wherever a run takes place.
std::vector<std::string> LinesOf(const PluginCoreCall& call,
                                 const std::function<std::string(const std::string&)>& shorten);

}  // namespace simhost
