// The simulated host: all its parts. Suite operations are plain functions that find it through Host().
#pragma once

#include "doubles/host/HostOperations.h"
#include "doubles/host/model/HostModel.h"
#include "doubles/host/model/HostObjects.h"
#include "doubles/host/Rules.h"
#include "doubles/host/suites/SuiteStore.h"

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
