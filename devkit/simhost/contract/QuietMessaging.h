// A messaging library that has nothing to say, for a library that is called without the host.
//
// Thread: main.
#pragma once

#include "plugincore/PluginCore.h"

namespace simhost::contract {

// One for the process: a library may keep the pointer until the process ends.
PlugPlugState* QuietMessaging();

}  // namespace simhost::contract
