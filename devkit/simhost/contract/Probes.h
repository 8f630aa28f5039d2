// Direct calls of a PluginCore that the plug-in itself never makes, each kind in a process of its own.
//
// Thread: main.
#pragma once

#include <filesystem>
#include <span>
#include <string>

#include "simhost/contract/Clauses.h"

namespace simhost::contract {

class ProbedLibrary;

struct Probe {
    const char* name;
    void (*run)(ProbedLibrary& library);
    // What a crash, a hang or an exit during the probe says; kCrash stands for whichever it was.
    ClauseId lossMeans;
    // It calls the library without guards: of use only when nothing else is broken.
    bool needsSoundLibrary = false;
};

std::span<const Probe> AllProbes();

// Runs the probe of that name in this process; what it finds goes into the contract's book. Exit code 0.
int RunProbe(const std::string& name, const std::filesystem::path& file);

}  // namespace simhost::contract
