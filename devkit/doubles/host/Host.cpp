#include "doubles/host/Host.h"

#include <stdexcept>
#include <utility>

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

SimulatedHost::~SimulatedHost() {
    sHost = nullptr;
    HandleRange::Restart();
}

void SimulatedHost::Renew() {
    HandleRange::Next();
    rules = RuleBook();
    operations = HostOperations();
    model = HostModel();
    mFormerObjects.push_back(std::exchange(objects, HostObjects()));
    notes.clear();
}

void SimulatedHost::ReportLeftovers() {
    for (const auto& suite : suites.All()) {
        const std::int64_t left = suite->held - suite->leftByRefusals;
        if (left > 0) {
            rules.Broken(Rule::kSuiteLeak, "\"" + suite->name + "\" is still held " + std::to_string(left) + " times",
                         left);
        } else if (left < 0) {
            rules.Broken(Rule::kSuiteNotHeld,
                         "\"" + suite->name + "\" was released " + std::to_string(-left) + " times too often", -left);
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
