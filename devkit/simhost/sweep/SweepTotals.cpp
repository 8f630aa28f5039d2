#include "simhost/sweep/SweepTotals.h"

#include <cstdio>
#include <nlohmann/json.hpp>

#include "simhost/sweep/ImportTable.h"

namespace simhost::sweep {

namespace {

using Json = nlohmann::ordered_json;

struct CountRow {
    const char* key;
    const char* heading;
    std::int64_t FaultCounts::*count;
};

// Before anything was played.
constexpr CountRow kPlanned[] = {
    {"offered", "offered", &FaultCounts::offered},
    {"left_out_same_way", "on the way of another one", &FaultCounts::sameWay},
    {"left_out_passed_over", "passed over", &FaultCounts::passedOver},
};

constexpr CountRow kCounts[] = {
    {"played", "played", &FaultCounts::played},
    {"not_reached", "not reached", &FaultCounts::notReached},
    {"failed_calls", "failed calls", &FaultCounts::failedCalls},
    {"answered_zero", "answered 0", &FaultCounts::answeredZero},
    {"answered_code", "other answer", &FaultCounts::answeredCode},
    {"unhandled", "stopped exc.", &FaultCounts::unhandled},
    {"lost", "lost", &FaultCounts::lost},
    {"played_again", "played again", &FaultCounts::playedAgain},
    {"with_findings", "findings", &FaultCounts::withFindings},
};

template <class Visit>
void ForEach(const SweepTotals& totals, Visit visit) {
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
        for (std::size_t mode = 0; mode < kModes; ++mode) {
            const FaultCounts& counts = totals.faults[kind][mode];
            if (counts.offered != 0) {
                visit(NameOf(static_cast<Kind>(kind)), NameOf(static_cast<Mode>(mode)), counts);
            }
        }
    }
}

std::string Column(const std::string& text, int width) {
    char column[64];
    std::snprintf(column, sizeof column, "%*s", width, text.c_str());
    return column;
}

}  // namespace

std::int64_t SweepTotals::Sum(std::int64_t FaultCounts::*count) const {
    std::int64_t sum = 0;
    ForEach(*this, [&](const char*, const char*, const FaultCounts& counts) { sum += counts.*count; });
    return sum;
}

std::int64_t SweepTotals::NotPlayed() const {
    return Sum(&FaultCounts::offered) - Sum(&FaultCounts::sameWay) - Sum(&FaultCounts::passedOver) - Played();
}

Json AsJson(const SweepTotals& totals) {
    const std::int64_t notReached = totals.Sum(&FaultCounts::notReached);
    Json json = {{"scenarios", totals.files.size()},
                 {"cases", totals.cases},
                 {"faults", totals.Played()},
                 {"injected", totals.Played() - notReached},
                 {"not_reached", notReached},
                 {"with_findings", totals.Sum(&FaultCounts::withFindings)},
                 {"left_out",
                  {{"same_way", totals.Sum(&FaultCounts::sameWay)},
                   {"passed_over", totals.Sum(&FaultCounts::passedOver)},
                   {"not_played", totals.NotPlayed()}}},
                 {"played_again", totals.Sum(&FaultCounts::playedAgain)},
                 {"unplayable", totals.unplayable},
                 {"not_replayable_in_one_instance", totals.notPlayableTwice}};
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
        json["calls"][NameOf(static_cast<Kind>(kind))] = totals.calls[kind];
    }
    json["by_kind"] = Json::object();
    ForEach(totals, [&](const char* kind, const char* mode, const FaultCounts& counts) {
        for (const CountRow& row : kPlanned) {
            json["by_kind"][kind][mode][row.key] = counts.*row.count;
        }
        for (const CountRow& row : kCounts) {
            json["by_kind"][kind][mode][row.key] = counts.*row.count;
        }
    });
    json["explained"] = totals.explained;
    json["operations"] = totals.operations;
    json["imports_that_can_fail"] = Json::array();
    for (const ImportRow& row : ImportTable()) {
        if (row.cannotFail == nullptr) {
            json["imports_that_can_fail"].emplace_back(row.name);
        }
    }
    json["findings"] = Json::array();
    for (const SweepFinding& finding : totals.findings) {
        json["findings"].push_back({{"place", finding.place},
                                    {"repeat", finding.repeat},
                                    {"operation", finding.operation},
                                    {"texts", finding.texts}});
    }
    return json;
}

std::vector<std::string> LinesOf(const SweepTotals& totals) {
    std::vector<std::string> lines;
    std::string heading = Column("kind", -12) + Column("mode", -11);
    for (const CountRow& row : kCounts) {
        heading += Column(row.heading, 14);
    }
    lines.push_back(heading);
    ForEach(totals, [&](const char* kind, const char* mode, const FaultCounts& counts) {
        std::string line = Column(kind, -12) + Column(mode, -11);
        for (const CountRow& row : kCounts) {
            line += Column(std::to_string(counts.*row.count), 14);
        }
        lines.push_back(line);
    });
    lines.push_back("left out: " + std::to_string(totals.Sum(&FaultCounts::sameWay)) + " of " +
                    std::to_string(totals.Sum(&FaultCounts::offered)) + " faults that are on the way of another one, " +
                    std::to_string(totals.Sum(&FaultCounts::passedOver)) + " passed over, " +
                    std::to_string(totals.NotPlayed()) + " not played");
    for (const std::string& story : totals.notPlayableTwice) {
        lines.push_back("not replayable in one instance: " + story);
    }
    for (const auto& [what, amount] : totals.explained) {
        lines.push_back("explained: " + std::to_string(amount) + " x " + what);
    }
    return lines;
}

}  // namespace simhost::sweep
