#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace simhost {

struct PlayOptions {
    std::filesystem::path scenario;    // a file, or a folder of files
    std::string caseName;              // empty: all cases
    std::filesystem::path plugin;      // empty: the one that the scenario names
    std::filesystem::path workFolder;  // empty: one of its own for each run, removed afterwards
    std::filesystem::path record;      // empty: none is kept
    std::optional<std::int64_t> timeLimitSeconds{};
    bool quiet = false;
};

// Plays a scenario's cases one after the other, and of a folder all scenarios. Says on standard error what is wrong.
// Exit code 0 when all runs passed, 1 when one did not, 2 when one cannot be played.
int Play(const PlayOptions& options);

}  // namespace simhost
