// Plays scenarios with one fault after the other, and tells what the plug-in does not bear.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "simhost/sweep/Fault.h"

namespace simhost::sweep {

struct SweepOptions {
    std::vector<std::filesystem::path> scenarios;  // files, folders of files, and patterns
    std::vector<std::string> cases;                // names and patterns; empty: all
    std::filesystem::path plugin;                  // empty: the one that the scenario names
    std::vector<Kind> kinds;
    std::vector<Mode> modes;
    std::optional<std::size_t> number{};  // of the one call that fails; nothing: each in turn
    bool distinct = false;                // faults on one way through the plug-in are played once in the sweep
    std::size_t every = 1;                // of the faults of a kind and mode in a case, plays each so many-th
    std::size_t replayEvery = 1;          // faults
    std::optional<std::int64_t> stepTimeLimitSeconds{};  // nothing: the scenario's, else 20
    bool noWait = false;
    std::filesystem::path json;  // where to write the totals; empty: nowhere
};

// Exit code 0 when nothing was found, 1 when something was, 2 when a scenario cannot be played.
int Sweep(const SweepOptions& options);

}  // namespace simhost::sweep
