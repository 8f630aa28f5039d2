// Times several ways to do the same work so that the noise of the machine hits all of them alike.
// Thread: main.
#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <vector>

namespace bench {

// Does the work once.
using Work = std::function<void()>;

struct Effort {
    double sampleNanoseconds;  // each sample repeats the work until it takes about so long
    std::size_t rounds;        // samples of each work, at most
    double limitNanoseconds;   // for all of them together; three rounds are made however long they take
};

// The work was done well once: a few milliseconds a sample drown the clock's steps of 100 ns.
constexpr Effort kThorough{2e6, 101, 20e9};
// Only shows that it can be done.
constexpr Effort kQuick{0, 3, 0};

// For each work, the nanoseconds that doing it once took, in each round. The works take turns sample by sample, and
// each round begins with another one.
std::vector<std::vector<double>> SampleInTurns(std::span<const Work> works, const Effort& effort);

}  // namespace bench
