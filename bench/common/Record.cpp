#include "common/Record.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <nlohmann/json.hpp>

#include "doubles/common/AllocationFaults.h"

namespace bench {

namespace {

// `part` of the values lie below it.
double Quantile(std::vector<double> values, double part) {
    const auto rank = std::llround(part * static_cast<double>(values.size() - 1));
    std::ranges::nth_element(values, values.begin() + rank);
    return values[static_cast<std::size_t>(rank)];
}

double Median(const std::vector<double>& values) { return Quantile(values, 0.5); }

nlohmann::json EntryRecord(const Entry& entry, const std::vector<double>& samples,
                           const std::vector<double>& baseSamples) {
    std::vector<double> ratios;
    std::ranges::transform(samples, baseSamples, std::back_inserter(ratios), std::divides());
    return {{"name", entry.name},
            {"nanoseconds", Median(samples)},
            {"ratio", Median(samples) / Median(baseSamples)},
            {"low", Quantile(ratios, 0.25)},
            {"high", Quantile(ratios, 0.75)}};
}

nlohmann::json TimeRecord(const Comparison& comparison, const Effort& effort) {
    std::vector<Work> works;
    std::ranges::transform(comparison.entries, std::back_inserter(works), &Entry::work);
    const std::vector<std::vector<double>> samples = SampleInTurns(works, effort);
    const auto base = std::ranges::find(comparison.entries, comparison.base, &Entry::name);
    const std::vector<double>& baseSamples =
        samples[static_cast<std::size_t>(std::distance(comparison.entries.begin(), base))];
    nlohmann::json entries = nlohmann::json::array();
    for (std::size_t i = 0; i < comparison.entries.size(); ++i) {
        entries.push_back(EntryRecord(comparison.entries[i], samples[i], baseSamples));
    }
    return {{"name", comparison.name}, {"base", comparison.base}, {"rounds", baseSamples.size()}, {"entries", entries}};
}

std::size_t HeapCallsOf(const Work& work) {
    const std::size_t before = AllocationsMade();
    work();
    return AllocationsMade() - before;
}

}  // namespace

// Counting comes after all timing, because the counted heap stays counted.
nlohmann::json Measure(const std::vector<Comparison>& comparisons, const Effort& effort) {
    nlohmann::json record = nlohmann::json::array();
    for (const Comparison& comparison : comparisons) {
        record.push_back(TimeRecord(comparison, effort));
    }
    for (std::size_t i = 0; i < comparisons.size(); ++i) {
        for (std::size_t j = 0; j < comparisons[i].entries.size(); ++j) {
            record[i]["entries"][j]["heap_calls"] = HeapCallsOf(comparisons[i].entries[j].work);
        }
    }
    return record;
}

}  // namespace bench
