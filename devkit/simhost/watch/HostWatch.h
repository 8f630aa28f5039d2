// Runs the host's process as its debugger, and finds out how it ended. A debugger is told of what a process itself
// never hears: fail-fast, a stack that is used up, being ended. It looks at threads from outside, so nothing has to
// work in a process that is broken, and the process dies with its debugger.
//
// Differences that this makes to the host are kept small: the debug heap is off, and an invalid handle that is closed
// raises nothing.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "doubles/host/Rules.h"
#include "simhost/launch/Job.h"
#include "simhost/run/FlightRecorder.h"

namespace simhost {

struct HostProgram {
    std::filesystem::path program;
    std::vector<std::wstring> arguments;
    std::filesystem::path runFolder;
};

struct WatchLimits {
    std::int64_t runSeconds;
    std::int64_t stepSeconds;
    bool tellsThreadsLeft = true;  // threads that still run at the end; to name them takes its time
    bool hasPerson = false;        // who answers dialogs, however long that takes
};

// In the words of a crash that happened on any other thread than the main one.
constexpr const char* kOnOtherThread = "on a thread beside the main thread";

struct HostEnd {
    bool hasBegun = false;            // the host itself ran, and not Windows' start of its process alone
    bool concluded = false;           // the host came to its end, and wrote a result before
    std::vector<Violation> findings;  // what was seen from outside
};

// Returns when nothing of the run is left. The recorder is the one that the host finds in its environment. Throws
// std::runtime_error when the program cannot be started, Cancelled when somebody does not want to wait.
HostEnd RunAndWatch(const HostProgram& host, const WatchLimits& limits, const FlightRecorder& recorder);

}  // namespace simhost
