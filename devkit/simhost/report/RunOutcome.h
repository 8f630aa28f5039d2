// What came of one run, for the reports about all of them.
#pragma once

#include <cstddef>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace simhost {

// A step that failed, or the one in which the host was lost.
struct FailedStep {
    std::size_t number = 0;  // 0: after the last step
    std::size_t line = 0;    // in the scenario file; 0: it is a default
    std::string say;         // or its verb
};

struct RunOutcome {
    std::filesystem::path file;
    std::string caseName;  // empty: the file has no cases
    std::string name;      // "file.json/case"
    std::string title;
    bool played = false;
    bool passed = false;
    std::vector<std::string> complaints{};  // or why it was not played
    double seconds = 0;
    std::optional<FailedStep> failed{};  // the first one
};

// Reads the lines that a run wrote from `offset` on. What was cut short by the end of the process is left out.
std::vector<nlohmann::ordered_json> ReadEvents(const std::filesystem::path& file, std::size_t offset = 0);

// The first step with a complaint that was not announced; or the one that never ended; nothing when all passed.
std::optional<FailedStep> FirstFailedStep(const std::vector<nlohmann::ordered_json>& events);

// Whether the host was lost within a step: nobody in its process could tell what came of it.
bool WasLostWithinStep(const std::vector<nlohmann::ordered_json>& events);

}  // namespace simhost
