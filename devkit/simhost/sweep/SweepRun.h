// One run of a sweep, in a process that plays many: loads the plug-in, plays all steps with a fault or without, unloads
// all that was loaded, and tells what is left.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "doubles/host/Rules.h"
#include "simhost/launch/RunFolder.h"
#include "simhost/scenario/Scenario.h"
#include "simhost/sweep/Fault.h"
#include "simhost/sweep/Holdings.h"

namespace simhost::sweep {

struct SweepRun {
    bool isLost = false;                              // an exception left the plug-in
    std::string brokenOff;                            // why the story could not be played to its end; else empty
    std::vector<Violation> violations;                // before the message below
    std::map<std::int32_t, std::int64_t> answers;     // how often the plug-in answered what
    std::vector<std::string> refused;                 // messages that were answered with 1 but may not be
    bool isNextHandled = true;                        // the message that follows the last step
    std::int64_t unhandled = 0;                       // exceptions that were stopped where messages enter
    std::map<std::string, std::int64_t> leftByGiver;  // what the plug-in has not given back: see Holdings
    std::vector<Held> left;
};

// The folder is as it was before any run: see FolderReset. A run without a fault is checked at its end as every run is.
SweepRun PlayOnce(const Scenario& scenario, const RunFolder& folder, std::optional<Fault> fault, bool records);

}  // namespace simhost::sweep
