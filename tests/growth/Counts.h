// What this process has of everything that a plug-in could leave behind.
//
// Thread: main.
#pragma once

#include <array>
#include <string>

namespace growth {

enum Kind { kHandles, kWindows, kHooks, kThreads, kBlocks, kBytes };
constexpr std::array kKindNames = {"handles", "windows", "hooks", "threads", "blocks", "bytes"};
constexpr std::size_t kKinds = kKindNames.size();

struct Counts {
    std::array<long long, kKinds> of{};

    static Counts Now();
    bool operator==(const Counts&) const = default;
};

Counts operator-(const Counts& after, const Counts& before);
Counts operator+(const Counts& one, const Counts& other);
Counts operator*(const Counts& counts, long long times);
// "handles 2, blocks 3"; only what is not 0.
std::string InWords(const Counts& counts);

}  // namespace growth
