// What calls promise about each other: what was answered before TerminatePluginCoreInterface must be answered after it.
//
// Thread: main.
#pragma once

#include "simhost/checks/PluginCoreCalls.h"

namespace simhost::contract {

// After each call, once it is answered. `number` is that of the call of its entry. `isTimed`: the time that it took is
// the library's own.
void CheckTimeline(const PluginCoreCall& call, int number, bool isTimed);

// The next call is the first one of a library.
void ForgetTimeline();

}  // namespace simhost::contract
