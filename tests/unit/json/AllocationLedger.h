// Counts what the calling thread takes from and gives back to operator new and delete, and can make an allocation fail.
// Linking AllocationLedger.cpp replaces these operators for the whole program.
#pragma once

#include <cstddef>

// Blocks that this thread has allocated and not yet deleted. A block must be deleted by the thread that allocated it.
std::ptrdiff_t LiveAllocations() noexcept;

// Allocations that this thread has made so far.
std::size_t AllocationsMade() noexcept;

// While it lives, the `failing`-th allocation of this thread (1 is the next one) throws std::bad_alloc; those after it
// succeed again. One at a time.
class FailingAllocation {
  public:
    explicit FailingAllocation(std::size_t failing) noexcept;
    ~FailingAllocation();
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;

    // False as long as fewer allocations were made.
    bool HasHappened() const noexcept;
};
