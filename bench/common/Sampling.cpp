#include "common/Sampling.h"

#include <windows.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace bench {

namespace {

// From one step of the clock to the next.
double StepNanoseconds() {
    LARGE_INTEGER ticksPerSecond;
    QueryPerformanceFrequency(&ticksPerSecond);
    return 1e9 / static_cast<double>(ticksPerSecond.QuadPart);
}

double Nanoseconds() {
    LARGE_INTEGER ticks;
    QueryPerformanceCounter(&ticks);
    return static_cast<double>(ticks.QuadPart) * StepNanoseconds();
}

// A step of the clock at least: of two works that take no time, the ratio is a number too.
double TimeOf(const Work& work, std::size_t repetitions) {
    const double began = Nanoseconds();
    for (std::size_t i = 0; i < repetitions; ++i) {
        work();
    }
    return std::max(Nanoseconds() - began, StepNanoseconds());
}

// So many that a sample takes as long as it shall. Warms the caches and the heap on the way.
std::size_t RepetitionsFor(const Work& work, double sampleNanoseconds) {
    std::size_t repetitions = 1;
    double time = TimeOf(work, repetitions);
    while (time < sampleNanoseconds / 2) {
        repetitions *= 2;
        time = TimeOf(work, repetitions);
    }
    const double needed = sampleNanoseconds / time * static_cast<double>(repetitions);
    return std::max<std::size_t>(1, static_cast<std::size_t>(std::llround(needed)));
}

}  // namespace

std::vector<std::vector<double>> SampleInTurns(std::span<const Work> works, const Effort& effort) {
    constexpr std::size_t kFewestRounds = 3;
    std::vector<std::size_t> repetitions;
    for (const Work& work : works) {
        repetitions.push_back(RepetitionsFor(work, effort.sampleNanoseconds));
    }
    std::vector<std::vector<double>> samples(works.size());
    const double end = Nanoseconds() + effort.limitNanoseconds;
    for (std::size_t round = 0; round < effort.rounds && (round < kFewestRounds || Nanoseconds() < end); ++round) {
        for (std::size_t turn = 0; turn < works.size(); ++turn) {
            const std::size_t i = (round + turn) % works.size();
            samples[i].push_back(TimeOf(works[i], repetitions[i]) / static_cast<double>(repetitions[i]));
        }
    }
    return samples;
}

}  // namespace bench
