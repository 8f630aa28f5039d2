// Writes what was observed in a run into a new scenario, which expects just that.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "simhost/scenario/Values.h"

namespace simhost {

struct Accepted {
    nlohmann::ordered_json scenario;
    std::vector<std::string> refused;  // what nobody can expect: a crash, a leak. Empty: the scenario passes
};

// `story` is the case with everything written out for this run, `placeholders` what was filled in for the run; they are
// put back. `usual` tells which of "begin" and "end" were not written in the file. `events` are the lines of the run,
// `complaints` what its verdict holds.
Accepted AcceptObserved(nlohmann::ordered_json story, const Placeholders& placeholders,
                        const std::vector<std::string>& usual, const std::vector<nlohmann::ordered_json>& events,
                        const std::vector<std::string>& complaints);

}  // namespace simhost
