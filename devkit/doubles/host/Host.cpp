#include "doubles/host/Host.h"

#include <stdexcept>

#include "doubles/host/suites/AllSuites.h"

namespace simhost {

namespace {

SimulatedHost* sHost = nullptr;

}  // namespace

SimulatedHost::SimulatedHost() {
    if (sHost != nullptr) {
        throw std::logic_error("there is a host already");
    }
    InstallAllSuites(suites);
    sHost = this;
}

SimulatedHost::~SimulatedHost() { sHost = nullptr; }

void SimulatedHost::ReportLeftovers() {
    for (const auto& suite : suites.All()) {
        if (suite->held != 0) {
            rules.Broken(Rule::kSuiteLeak,
                         "\"" + suite->name + "\" is still held " + std::to_string(suite->held) + " times",
                         suite->held);
        }
    }
    for (const auto& [handle, timer] : model.timers.Objects()) {
        if (timer.active != 0) {
            rules.Broken(Rule::kTimerLeft, "the timer \"" + timer.name + "\" is still active");
        }
    }
    objects.ReportLeaks(rules);
}

SimulatedHost& Host() {
    if (sHost == nullptr) {
        throw std::logic_error("there is no host");
    }
    return *sHost;
}

}  // namespace simhost
