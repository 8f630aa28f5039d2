// Thread: main.
#pragma once

#include <cstdint>

#include "host/HostTypes.h"

namespace simhost {

// The plug-in as the host knows it: in every message, and in every call that registers something. It points nowhere.
inline const SPPluginRef kPluginRef = reinterpret_cast<SPPluginRef>(std::uintptr_t{0x5100000010});

}  // namespace simhost
