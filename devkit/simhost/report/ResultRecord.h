// The result of a run, written last: whoever finds none knows that the run did not end as it should.
#pragma once

#include <filesystem>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "doubles/host/Rules.h"
#include "simhost/scenario/Scenario.h"

namespace simhost {

// In the complaint that stands for all further ones of its rule.
inline constexpr const char* kMoreOfTheSame = "more of the same, see the violations in the record";
// How complaints about a rule go on that was broken otherwise than announced.
inline constexpr const char* kOtherNumber = ": broken ";
inline constexpr const char* kOtherViolations = ": other violations than expected";

struct Verdict {
    bool passed;
    std::vector<std::string> complaints;  // one line each
    std::vector<Violation> violations{};  // all, announced ones among them
};

// Compares the noted violations with those that the scenario announces.
Verdict Judge(const RuleBook& book, const Expectations& expect);

// Writes verdict, violations, notes and counts of host calls as JSON.
void WriteResult(const std::filesystem::path& file, const std::string& title, const Verdict& verdict);

// Keeps a violation as soon as it is noted, for the case that the run writes no result.
void NoteViolation(const std::filesystem::path& file, const Violation& violation);

// Adds to the result what was seen from outside of the host's process, and judges anew. Without a result, it is made
// from the violations that were noted one by one; when there should be one, that is a violation itself.
void CompleteResult(const std::filesystem::path& file, const Scenario& scenario, bool shouldBeThere,
                    const std::filesystem::path& notedViolations, std::vector<Violation> seenFromOutside);

// Adds a member to a result that is there.
void AddToResult(const std::filesystem::path& file, const std::string& name, nlohmann::ordered_json value);

// Throws std::runtime_error when there is no readable result.
Verdict ReadResult(const std::filesystem::path& file);

}  // namespace simhost
