#pragma once

#include <string>

namespace simhost {

// The full path of the PluginCore's library in this process; empty when none is loaded. Any library counts whose name
// ends as the PluginCore's does, since a value without a folder is put before the name as it stands.
std::string PluginCoreInProcess();

}  // namespace simhost
