// The result of a run, written last: whoever finds none knows that the run did not end as it should.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "doubles/host/Rules.h"
#include "simhost/scenario/Scenario.h"

namespace simhost {

struct Verdict {
    bool passed;
    std::vector<std::string> complaints;  // one line each
};

// Compares the noted violations with those that the scenario announces.
Verdict Judge(const RuleBook& book, const Expectations& expect);

// Writes verdict, violations, notes and counts of host calls as JSON.
void WriteResult(const std::filesystem::path& file, const std::string& title, const Verdict& verdict);

// The result of a run that could not write one itself: the rule alone is broken.
void WriteResultForLostRun(const std::filesystem::path& file, const Scenario& scenario, Rule rule,
                           const std::string& text);

// Throws std::runtime_error when there is no readable result.
Verdict ReadResult(const std::filesystem::path& file);

}  // namespace simhost
