// What a sweep has brought about, in numbers and findings.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <set>
#include <string>
#include <vector>

#include "simhost/sweep/Fault.h"

namespace simhost::sweep {

// Faults of one kind and mode.
struct FaultCounts {
    std::int64_t offered = 0;     // by all calls of all cases, or by the --number that is asked for
    std::int64_t sameWay = 0;     // of these, left out: on the way of another one that is played
    std::int64_t passedOver = 0;  // of these, left out: by --every
    std::int64_t played = 0;
    std::int64_t notReached = 0;    // the run did not come to the call
    std::int64_t failedCalls = 0;   // by all of them; more than one for "from-here"
    std::int64_t answeredZero = 0;  // every message was answered with 0
    std::int64_t answeredCode = 0;  // a message was answered with something else
    std::int64_t unhandled = 0;     // an exception was stopped where a message enters
    std::int64_t lost = 0;          // crash, hang, or an exception that left the plug-in
    std::int64_t playedAgain = 0;   // a run without a fault followed in the same instance of the plug-in
    std::int64_t withFindings = 0;  // these among them
};

struct SweepFinding {
    std::string place;   // "file.json/case"
    std::string repeat;  // the options that play it again, the scenario among them
    std::string operation;
    std::vector<std::string> texts;
};

struct SweepTotals {
    std::int64_t cases = 0;
    std::set<std::string> files;                // of these cases
    std::vector<std::string> unplayable;        // with the reason
    std::vector<std::string> notPlayableTwice;  // to one loaded plug-in, with the reason; swept all the same
    std::array<std::int64_t, kKinds> calls{};   // counted, in all cases
    std::array<std::array<FaultCounts, kModes>, kKinds> faults{};
    std::map<std::string, std::int64_t> explained;  // what was left because its release failed
    std::set<std::string> operations;               // that were made to fail
    std::vector<SweepFinding> findings;

    FaultCounts& Of(const Fault& fault) {
        return faults[static_cast<std::size_t>(fault.kind)][static_cast<std::size_t>(fault.mode)];
    }
    // In all kinds and modes.
    std::int64_t Sum(std::int64_t FaultCounts::*count) const;
    std::int64_t Played() const { return Sum(&FaultCounts::played); }
    // Neither played nor left out on purpose.
    std::int64_t NotPlayed() const;
};

// One object with plain counts, and the findings.
nlohmann::ordered_json AsJson(const SweepTotals& totals);
// For people.
std::vector<std::string> LinesOf(const SweepTotals& totals);

}  // namespace simhost::sweep
