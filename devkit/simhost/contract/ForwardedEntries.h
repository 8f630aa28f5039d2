// The entries that the plug-in is given in place of a library's own. Each goes through a GuardedCall.
//
// Thread: main.
#pragma once

#include <windows.h>

#include <string_view>

namespace simhost::contract {

// From now on the forwarding entry of that name calls `real`. Null when there is no entry of that name.
FARPROC Forwarding(std::string_view name, FARPROC real);

}  // namespace simhost::contract
