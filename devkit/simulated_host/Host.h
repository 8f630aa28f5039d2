// The simulated host: all its parts. Suite operations are plain functions that find it through Host().
#pragma once

#include "simulated_host/HostModel.h"
#include "simulated_host/HostObjects.h"
#include "simulated_host/HostOperations.h"
#include "simulated_host/Rules.h"
#include "simulated_host/SuiteStore.h"

namespace simhost {

struct SimulatedHost {
    RuleBook rules;
    HostOperations operations;
    SuiteStore suites;
    HostModel model;
    HostObjects objects;
    // A wrong name or version was asked for, and the like: worth telling, but allowed.
    std::vector<std::string> notes;
};

// The one host of the process; made on first use, on the main thread, and never destroyed.
SimulatedHost& Host();

}  // namespace simhost
