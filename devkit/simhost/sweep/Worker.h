// The process that plays a scenario again and again, with one fault after the other. It is the host of all these runs,
// and may be lost to any of them: it tells what it begins and what came of it in a file, as it goes: see
// WorkerResults.h.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "simhost/sweep/Fault.h"

namespace simhost::sweep {

struct WorkerOptions {
    std::filesystem::path scenario;
    std::string caseName;
    std::filesystem::path workFolder;  // laid out already
    std::filesystem::path kit;         // the folder of the libraries that scenarios copy
    std::filesystem::path pluginName;
    std::filesystem::path results;
    std::filesystem::path known;  // a file of the keys of faults that need not be played; empty: all are
    std::vector<Kind> kinds;
    std::vector<Mode> modes;
    std::optional<std::size_t> number{};  // of the one call that fails; nothing: each in turn
    std::size_t every = 1;                // of the faults of a kind and mode, plays each so many-th
    std::size_t first = 0;                // index in the plan to begin with
    std::size_t last = SIZE_MAX;          // and to end before
    std::size_t replayEvery = 1;          // faults
};

// Exit code 0 when it came to its end, whatever was found.
int Work(const WorkerOptions& options);

}  // namespace simhost::sweep
