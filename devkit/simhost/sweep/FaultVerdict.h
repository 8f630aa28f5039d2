// What a run with a fault may bring about, and what it may not.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

#include "simhost/sweep/SweepRun.h"

namespace simhost::sweep {

struct FaultVerdict {
    std::vector<std::string> findings;              // one line each; none: all is well
    std::map<std::string, std::int64_t> explained;  // what is left because its release failed: amounts by explanation
};

// `failures`: how often each operation has failed in the run.
FaultVerdict JudgeFault(const SweepRun& run, const SweepRun& faultless,
                        const std::map<std::string, std::int64_t>& failures);

enum class Amount {
    kEach,  // each failure explains one thing
    kAny,   // one failure explains all of them
};

// A release that fails leaves what it was to release, and explains nothing else.
struct Explanation {
    const char* failed;  // the operation; with a * at its end, all that begin so
    const char* left;    // in the same way, the rule that is broken, or the function that gave what is left
    Amount amount = Amount::kEach;
};
std::span<const Explanation> Explanations();

}  // namespace simhost::sweep
