// How many calls through a pointer a library's function makes: calls into other libraries, the host's operations, the
// PluginCore's entries. Their number does not depend on the machine, and each of them is paid for.
//
// The function is stepped through one instruction at a time; what it calls outside of its library runs at full speed.
// Thread: main.
#pragma once

#include <windows.h>

#include <functional>

// Calls and jumps through a pointer that the code of `module` makes from the next call of `function`, which lies in it
// and is called by `work`, to its return. A jump is counted because a call of Windows may begin with one.
int IndirectCallsOf(HMODULE module, const void* function, const std::function<void()>& work);
