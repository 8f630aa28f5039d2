#pragma once

#include <cstdint>
#include <filesystem>

namespace simhost {

struct PlayOptions {
    std::filesystem::path scenario;
    std::filesystem::path plugin;
    std::filesystem::path workFolder;  // empty: one of its own, removed afterwards
    std::filesystem::path record;      // empty: none is kept
    std::int64_t timeLimitSeconds = 60;
    bool quiet = false;
};

// Lays out what a scenario needs, plays it in a process of its own, and puts everything back. Says on standard error
// what is wrong. Exit code 0 when the run passed, 1 when it did not, 2 when the scenario cannot be played.
int Play(const PlayOptions& options);

}  // namespace simhost
