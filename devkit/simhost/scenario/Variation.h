// A scenario played otherwise than it was written: only up to a step, or with answers that the PluginCore should never
// give.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simhost/scenario/Scenario.h"

namespace simhost {

struct Variation {
    std::string until;                    // a step's number or what it says; empty: all steps
    std::optional<std::uint64_t> seed{};  // of the answers; nothing: those of the scenario
};

// As the program takes them on its command line.
std::vector<std::string> AsArguments(const Variation& variation);

// Throws std::runtime_error when the scenario has no such step.
void Vary(Scenario& scenario, const Variation& variation);

}  // namespace simhost
