// Counts the blocks that the program takes from and gives back to the C runtime, and fails an allocation on request.
// What lies inside OwnMemory does not count. The program's imports of malloc and free are patched at the first use of
// anything below, and stay so until the process ends.
//
// Thread: only the allocations of the thread that made the first use count, and only they can fail.
#pragma once

#include <cstddef>

// Blocks taken and not yet given back, since the first use. Only differences mean something: a block that was taken
// before and is given back later counts as well.
std::ptrdiff_t LiveAllocations() noexcept;

// Blocks taken since the first use.
std::size_t AllocationsMade() noexcept;

// Fails the n-th allocation made while it lives (1 is the next one): malloc answers null, and operator new throws
// std::bad_alloc. Those after it succeed: the exception takes a block itself. One at a time.
class FailingAllocation {
  public:
    explicit FailingAllocation(std::size_t nth = 1) noexcept;
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation();

    // False as long as fewer allocations were made.
    bool HasHappened() const noexcept;
};
