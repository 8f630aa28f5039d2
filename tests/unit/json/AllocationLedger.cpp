#include "unit/json/AllocationLedger.h"

#include <cstdlib>
#include <new>

namespace {

// Other threads, such as the one that watches for tests that hang, keep ledgers of their own.
thread_local std::ptrdiff_t sLive = 0;
thread_local std::size_t sMade = 0;
thread_local std::size_t sUntilFailure = 0;  // 0: none is to fail

}  // namespace

std::ptrdiff_t LiveAllocations() noexcept { return sLive; }

std::size_t AllocationsMade() noexcept { return sMade; }

FailingAllocation::FailingAllocation(std::size_t failing) noexcept { sUntilFailure = failing; }

FailingAllocation::~FailingAllocation() { sUntilFailure = 0; }

bool FailingAllocation::HasHappened() const noexcept { return sUntilFailure == 0; }

// The library's forms for arrays, and those that do not throw, call these.
void* operator new(std::size_t size) {
    if (sUntilFailure != 0 && --sUntilFailure == 0) throw std::bad_alloc();
    void* const block = std::malloc(size != 0 ? size : 1);
    if (block == nullptr) throw std::bad_alloc();
    ++sLive;
    ++sMade;
    return block;
}

void operator delete(void* block) noexcept {
    if (block == nullptr) return;
    --sLive;
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
