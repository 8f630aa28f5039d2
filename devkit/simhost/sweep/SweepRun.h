// One run of a sweep, in a process that plays many: all steps, with a fault or without, and two messages more.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "doubles/host/Rules.h"
#include "simhost/sweep/Holdings.h"

namespace simhost::sweep {

// How often each operation has failed in a run.
using Failures = std::map<std::string, std::int64_t>;

struct SweepRun {
    bool isLost = false;                             // an exception left the plug-in
    std::string brokenOff;                           // why the story could not be played to its end; else empty
    std::vector<Violation> violations;               // to the end of the last message
    std::vector<std::string> messages;               // each with its answer, in their order
    std::map<std::string, std::int64_t> operations;  // of the host and of the PluginCore: how often each was called
    std::map<std::int32_t, std::int64_t> answers;    // how often the plug-in answered what
    std::vector<std::string> refused;                // messages that were answered with 1 but may not be
    // Of the messages after the last step, when the plug-in was still there: "About", which any plug-in answers at any
    // time, and the host's good-bye. No call is made to fail by then.
    std::optional<std::int32_t> aboutAnswer;
    std::optional<std::int32_t> shutdownAnswer;
    std::int64_t unhandled = 0;  // exceptions that were stopped where messages enter
    Failures failures;
    std::map<std::string, std::int64_t> leftByGiver;  // what the plug-in has not given back: see Holdings
    std::vector<Held> left;
};

}  // namespace simhost::sweep
