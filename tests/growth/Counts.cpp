#include "growth/Counts.h"

#include <windows.h>

#include "simhost/checks/ImportWatch.h"
#include "simhost/contract/ResourcesInUse.h"
#include "simhost/contract/ThreadsInUse.h"

namespace growth {

namespace {

BOOL CALLBACK CountOwn(HWND window, LPARAM count) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    *reinterpret_cast<long long*>(count) += process == GetCurrentProcessId() ? 1 : 0;
    return TRUE;
}

// Of all threads; those without a place on the screen have another parent.
long long Windows() {
    long long count = 0;
    EnumWindows(&CountOwn, reinterpret_cast<LPARAM>(&count));
    for (HWND window = FindWindowExW(HWND_MESSAGE, nullptr, nullptr, nullptr); window != nullptr;
         window = FindWindowExW(HWND_MESSAGE, window, nullptr, nullptr)) {
        CountOwn(window, reinterpret_cast<LPARAM>(&count));
    }
    return count;
}

}  // namespace

Counts Counts::Now() {
    // Before the memory: what they take themselves must be back.
    const long long windows = Windows();
    const long long threads = simhost::contract::ThreadsInUse();
    const simhost::contract::ResourcesInUse use = simhost::contract::ResourcesInUse::Now();
    Counts counts;
    counts.of[kHandles] = use.handles;
    counts.of[kWindows] = windows;
    counts.of[kHooks] = simhost::HooksInPlace();
    counts.of[kThreads] = threads;
    counts.of[kBlocks] = use.blocks;
    counts.of[kBytes] = use.bytes;
    return counts;
}

Counts operator-(const Counts& after, const Counts& before) { return after + before * -1; }

Counts operator+(const Counts& one, const Counts& other) {
    Counts sum;
    for (std::size_t i = 0; i < kKinds; ++i) {
        sum.of[i] = one.of[i] + other.of[i];
    }
    return sum;
}

Counts operator*(const Counts& counts, long long times) {
    Counts product;
    for (std::size_t i = 0; i < kKinds; ++i) {
        product.of[i] = counts.of[i] * times;
    }
    return product;
}

std::string InWords(const Counts& counts) {
    std::string words;
    for (std::size_t i = 0; i < kKinds; ++i) {
        if (counts.of[i] != 0) {
            words += (words.empty() ? "" : ", ") + std::string(kKindNames[i]) + " " + std::to_string(counts.of[i]);
        }
    }
    return words.empty() ? "nothing" : words;
}

}  // namespace growth
