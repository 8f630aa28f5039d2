// The host as a scenario describes it, before its first step.
#pragma once

#include "simhost/scenario/Scenario.h"

namespace simhost {

// Throws std::runtime_error in words when the scenario describes a host that cannot be.
void PrepareHost(const Scenario& scenario);

}  // namespace simhost
