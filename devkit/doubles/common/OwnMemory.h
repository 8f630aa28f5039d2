// Marks memory that the doubles and the tests take for themselves: counting and failing allocations
// (doubles/common/AllocationFaults.h) leaves it out. Recorders and the operations of a double begin with it.
//
// Thread: any; the mark is one of the whole process. Lifetime: until the end of the block.
#pragma once

#include <atomic>

class OwnMemory {
  public:
    OwnMemory() { ++sDepth; }
    OwnMemory(const OwnMemory&) = delete;
    OwnMemory& operator=(const OwnMemory&) = delete;
    ~OwnMemory() { --sDepth; }

    static bool IsMarked() { return sDepth > 0; }

  private:
    friend class NotOwnMemory;
    // Of all threads together: a variable of each thread would take memory when it is first used.
    static inline std::atomic<int> sDepth = 0;
};

// Takes the mark away while code runs inside a double's operation that is not the double's.
class NotOwnMemory {
  public:
    NotOwnMemory() : mDepth(OwnMemory::sDepth.exchange(0)) {}
    NotOwnMemory(const NotOwnMemory&) = delete;
    NotOwnMemory& operator=(const NotOwnMemory&) = delete;
    ~NotOwnMemory() { OwnMemory::sDepth = mDepth; }

  private:
    int mDepth;
};
