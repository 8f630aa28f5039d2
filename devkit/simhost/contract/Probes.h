// Direct calls of a PluginCore that the plug-in itself never makes, each kind in a process of its own.
//
// Thread: main.
#pragma once

#include <span>

#include "simhost/contract/Clauses.h"

namespace simhost::contract {

class ProbedLibrary;

// What would make a probe useless or harmful. A hint, or a clause that has nothing to do with it, does not.
enum class Needs {
    kNothing,
    kSoundMemory,  // it calls the library without guards, many times
    kNothingLeft,  // as that, and it starts and ends the library many times
};

struct Probe {
    const char* name;
    void (*run)(ProbedLibrary& library);
    // What a crash, a hang or an exit during the probe says; kCrash stands for whichever it was.
    ClauseId lossMeans;
    Needs needs = Needs::kNothing;
};

std::span<const Probe> AllProbes();

}  // namespace simhost::contract
