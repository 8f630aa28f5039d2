// What a program has measured, in the form that scripts/bench reads.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <vector>

#include "common/Run.h"

namespace bench {

// [{"name", "base", "rounds", "entries": [{"name", "nanoseconds", "ratio", "low", "high", "heap_calls"}]}]
//
// "nanoseconds" is the median of the samples, "ratio" that median divided by the base's; between "low" and "high" lies
// the middle half of the ratios of the single rounds. "heap_calls" are the blocks that doing the work once takes.
nlohmann::json Measure(const std::vector<Comparison>& comparisons, const Effort& effort);

}  // namespace bench
