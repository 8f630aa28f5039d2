// Runs one probe in a process of its own, under the debugger: a crash, a hang or an exit is named with function, file
// and line.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "simhost/contract/ContractRecord.h"
#include "simhost/contract/Loss.h"
#include "simhost/contract/Probes.h"

namespace simhost::contract {

struct ProbeLimits {
    // One call that takes longer hangs. Several may add up to any time: a library may be slow.
    std::int64_t callSeconds = 10;
    // A probe that has taken longer makes no further call: what it would have tried is not tried.
    std::int64_t probeSeconds = 30;
};

struct ProbeOutcome {
    ContractRecord seen;
    std::optional<Loss> loss;        // how the process was lost, when it was
    std::vector<std::string> notes;  // what was not done, in words
};

// `record`: the file that the probe keeps its book in; a new one. Throws std::runtime_error, Cancelled.
ProbeOutcome RunInProcess(const Probe& probe, const std::filesystem::path& library, const std::filesystem::path& record,
                          const ProbeLimits& limits);

}  // namespace simhost::contract
