// What the programs here are written against: each defines its comparisons, and a main of their own does the rest.
//
//     void bench::Define(bench::Run& run) {
//         run.Compare("parse + destroy: settings", "RapidJSON",
//                     {{"this plug-in", [] { ... }}, {"RapidJSON", [] { ... }}, {"floor: copy of the text", [] { ...
//                     }}});
//     }
#pragma once

#include <string>
#include <vector>

#include "common/Sampling.h"

namespace bench {

// One way to do the work of a comparison. What it needs is made before: all that it does is measured.
struct Entry {
    std::string name;
    Work work;
};

struct Comparison {
    std::string name;
    std::string base;  // the entry that the others are measured by
    std::vector<Entry> entries;
};

class Run {
  public:
    // Remembered, and measured after all have been defined. `base` is the name of one of the entries.
    void Compare(std::string name, std::string base, std::vector<Entry> entries);

    const std::vector<Comparison>& Comparisons() const { return mComparisons; }

  private:
    std::vector<Comparison> mComparisons;
};

// Of each program; called once.
void Define(Run& run);

// Keeps the compiler from leaving out what made the value.
template <typename Value>
void Keep(const Value& value) {
#if defined(__GNUC__)
    asm volatile("" : : "g"(&value) : "memory");
#else
    static const volatile void* kept;
    kept = &value;
#endif
}

}  // namespace bench
