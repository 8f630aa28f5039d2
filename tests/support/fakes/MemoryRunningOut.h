// Lets one block that this test program asks the C runtime for, while it lives, not be had: the n-th one that is not
// the tests' own. The other ones can be: the exception that says so takes one itself. One at a time.
#pragma once

#include <cstddef>

#include "support/fakes/ImportPatch.h"
#include "support/TestsOwnMemory.h"

class MemoryRunningOut {
  public:
    // 1 is the first block.
    explicit MemoryRunningOut(int nth = 1) {
        sHasRunOut = false;
        sBlocksLeft = nth;
        sRealMalloc = mPatch.Original<void* (*)(std::size_t)>();
    }

    // Whether that block has been asked for.
    static bool HasRunOut() { return sHasRunOut; }

  private:
    static void* RunOutOnce(std::size_t size) {
        if (!TestsOwnMemory::IsWanted() && sBlocksLeft > 0 && --sBlocksLeft == 0) {
            sHasRunOut = true;
            return nullptr;
        }
        return sRealMalloc(size);
    }

    static inline bool sHasRunOut = false;
    static inline int sBlocksLeft = 0;
    static inline void* (*sRealMalloc)(std::size_t) = nullptr;
    ImportPatch mPatch{"malloc", AsReplacement(RunOutOnce)};
};
