// What is measured, and what may come of it.
//
// Thread: main.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "growth/Counts.h"
#include "growth/Cycle.h"

namespace growth {

struct Measurement {
    std::string what;
    long long times;
    Counts grown;
    Counts expected;
    bool isComparison = false;  // what others cost: right whatever it is
    bool IsRight() const { return grown == expected; }
};

// The two handles that stay open on purpose, one of each per life: of the process in which the core application runs,
// and of the search for the messaging library. Measured with calls of the same kind.
Counts CostOfOpenHandles(const Libraries& libraries, unsigned long coreApplication);

Measurement MeasureIdleCycles(const std::filesystem::path& idle, const Libraries& libraries, int cycles);
// `open` for each cycle, and what a plug-in that does nothing costs.
Measurement MeasureCycles(const std::filesystem::path& plugin, const Libraries& libraries, int cycles,
                          const Counts& open, const Counts& idle);
Measurement MeasureMessages(const std::filesystem::path& plugin, const Libraries& libraries, int messages);
// One of each kind is left behind, and must be seen as one.
std::vector<Measurement> MeasureLeaks(const std::filesystem::path& idle);

}  // namespace growth
