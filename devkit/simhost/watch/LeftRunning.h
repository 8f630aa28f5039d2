// What still runs when the host has come to its end: threads of others than the host and the system, and processes.
//
// Thread: the one that handles the process's debug events.
#pragma once

#include <windows.h>

#include <filesystem>
#include <map>
#include <vector>

#include "doubles/host/Rules.h"
#include "simhost/launch/Job.h"
#include "simhost/watch/CallStack.h"
#include "simhost/watch/Modules.h"

namespace simhost {

// `threads`: those that run, by identifier; `ending`: the one that ends the process, which is none of them. `program`:
// the host's own. Which step started them nobody can tell: a debugger is told of a thread when that begins to run, and
// the host may be a step further by then.
std::vector<Violation> ThreadsLeft(const std::map<DWORD, HANDLE>& threads, DWORD ending, const StackReader& stacks,
                                   const Modules& modules, const std::filesystem::path& program);

// Gives them a moment to end first.
std::vector<Violation> ProcessesLeft(const Job& job);

}  // namespace simhost
