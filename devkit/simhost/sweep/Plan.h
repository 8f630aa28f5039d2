// Which faults are played of those that a run offers.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "simhost/sweep/Fault.h"
#include "simhost/sweep/Injector.h"

namespace simhost::sweep {

struct PlannedFault {
    Fault fault;
    std::string operation;
    std::string key;  // equal for faults that are not distinct: kind, mode, operation, and the way through the plug-in
};

// All faults of these kinds and modes, by what the injector has recorded in a run without faults.
std::vector<PlannedFault> AllFaults(const Injector& recorded, const std::vector<Kind>& kinds,
                                    const std::vector<Mode>& modes);

// Leaves the first fault of each key, and none of those that are known.
void KeepDistinct(std::vector<PlannedFault>& faults, std::set<std::string> known);

// Of each kind and mode, leaves the first fault and each n-th after it.
void KeepEvery(std::vector<PlannedFault>& faults, std::size_t every);

}  // namespace simhost::sweep
