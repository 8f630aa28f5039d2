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

// How often each operation has failed in a run.
using Failures = std::map<std::string, std::int64_t>;

FaultVerdict JudgeFault(const SweepRun& run, const SweepRun& faultless, const Failures& failures);

enum class Amount {
    kEach,  // each failure explains one thing
    kAny,   // one failure explains all of them
};

// A release that fails leaves what it was to release, and explains nothing else. A * at the end of both stands for the
// same text.
struct Explanation {
    const char* failed;  // the operation
    const char* left;    // the rule that is broken, or the function that gave what is left
    Amount amount = Amount::kEach;
};
std::span<const Explanation> Explanations();

}  // namespace simhost::sweep
