// Whether a story that is played once more to the same loaded plug-in comes out as it should.
#pragma once

#include <string>
#include <vector>

#include "simhost/sweep/FaultVerdict.h"
#include "simhost/sweep/SweepRun.h"

namespace simhost::sweep {

// Of two runs of one story.
struct Difference {
    // "answers", "end", "stopped exceptions", the operation that was called more or less often ("calls of
    // PluginCore/IdleEvent"), or what was broken in one of them alone: "rule stale-reference: " and the text, or
    // "expectation boxes: " and the text, for rules that ask for what the scenario expects.
    std::string what;
    std::string text;  // in words
};

// In messages, answers, calls of the host and the PluginCore, and broken rules: none when the runs are the same.
std::vector<Difference> DifferencesBetween(const SweepRun& run, const SweepRun& expected);

// Two runs without a fault in one instance.
struct TwoRuns {
    SweepRun first;
    SweepRun second;
};

// The first run, with what may be left when `faulty` was in its place.
SweepRun ExpectedBefore(const TwoRuns& faultless, const SweepRun& faulty);

// `again`: the run without a fault that follows `faulty` in one instance. Each thing in it must come out as in the
// second of two runs without a fault; or as in the first, where the plug-in does something once and the fault has kept
// it from that, as it does when it keeps it from starting: to load the messaging library, for example. See
// LastingEffects for what else is no defect.
FaultVerdict JudgeNextInInstance(const SweepRun& again, const TwoRuns& faultless, const SweepRun& faulty);

}  // namespace simhost::sweep
