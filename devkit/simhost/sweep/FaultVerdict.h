// What a run with a fault may bring about, and what it may not.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "simhost/sweep/SweepRun.h"

namespace simhost::sweep {

struct FaultVerdict {
    std::vector<std::string> findings;              // one line each; none: all is well
    std::map<std::string, std::int64_t> explained;  // what is left because its release failed: amounts by explanation
};

FaultVerdict JudgeFault(const SweepRun& run, const SweepRun& faultless, const Failures& failures);

}  // namespace simhost::sweep
