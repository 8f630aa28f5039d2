#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "simhost/report/TellOptions.h"
#include "simhost/scenario/Variation.h"

namespace simhost {

struct PlayOptions {
    std::vector<std::filesystem::path> scenarios;  // files, folders of files, and patterns; empty: what failed last
    std::vector<std::string> cases;                // names and patterns; empty: all
    bool onlyFailed = false;                       // of those, what failed the last time
    std::filesystem::path plugin;                  // empty: the one that the scenario names
    std::filesystem::path pluginCore;              // empty: the double of the kit
    std::filesystem::path workFolder;              // empty: one of its own for each run, removed afterwards
    std::filesystem::path record;                  // empty: none is kept
    std::filesystem::path jsonLines;               // empty: none; "-": standard output
    std::filesystem::path junit;                   // empty: none
    std::filesystem::path accept;                  // a scenario to write what was observed into; empty: none
    bool inProcess = false;                        // one case, in this process: for debuggers
    bool overwrite = false;                        // also when there is one already
    std::optional<std::int64_t> timeLimitSeconds{};
    std::optional<std::int64_t> stepTimeLimitSeconds{};
    bool noWait = false;
    // What the command line names besides: files that are read, and no scenarios.
    std::vector<std::filesystem::path> documents{};
    // How a person repeats it when the scenario is one that a command made for itself; empty: the scenario is a file.
    std::string repeatedBy{};
    TellOptions tell{};
    Variation variation{};
};

// Checks all scenarios whole, then plays their cases one after the other. Says on standard error what is wrong.
// Exit code 0 when all runs passed, 1 when one did not, 2 when one cannot be played.
int Play(const PlayOptions& options);

}  // namespace simhost
