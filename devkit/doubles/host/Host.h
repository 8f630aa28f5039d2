// The double of the host: its suites, the model behind them, what it hands out, and the rules that it checks. Suite
// operations are plain functions without a context, so they find their host through Host().
//
// Thread: main.
#pragma once

#include <string>
#include <vector>

#include "doubles/host/HostOperations.h"
#include "doubles/host/model/HostModel.h"
#include "doubles/host/model/HostObjects.h"
#include "doubles/host/Rules.h"
#include "doubles/host/suites/SuiteStore.h"

namespace simhost {

// One at a time: simhost makes one for the process, a unit test makes one for itself.
class SimulatedHost {
  public:
    // Becomes the current host, with all suites installed.
    SimulatedHost();
    SimulatedHost(const SimulatedHost&) = delete;
    SimulatedHost& operator=(const SimulatedHost&) = delete;
    ~SimulatedHost();

    // As if made anew, for a plug-in that stays loaded: the tables of suites stay where they are, with their use
    // counts; blocks of memory stay readable; no handle is given a second time.
    void Renew();

    // Reports as broken rules what the plug-in has not given back: suites, timers, objects.
    void ReportLeftovers();

    RuleBook rules;
    HostOperations operations;
    SuiteStore suites;
    HostModel model;
    HostObjects objects;
    // What is allowed but worth telling, for example that a suite of a wrong version was asked for.
    std::vector<std::string> notes;

  private:
    std::vector<HostObjects> mFormerObjects;
};

// The current host. Throws std::logic_error when there is none.
SimulatedHost& Host();

}  // namespace simhost
