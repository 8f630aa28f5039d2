// Lets the first block that this test program asks the C runtime for, while it lives, not be had. The next ones can be:
// the exception that says so takes one itself. One at a time.
#pragma once

#include <cstddef>

#include "support/fakes/ImportPatch.h"

class MemoryRunningOut {
  public:
    MemoryRunningOut() {
        sHasRunOut = false;
        sRealMalloc = mPatch.Original<void* (*)(std::size_t)>();
    }

    // Whether a block has been asked for.
    static bool HasRunOut() { return sHasRunOut; }

  private:
    static void* RunOutOnce(std::size_t size) {
        if (!sHasRunOut) {
            sHasRunOut = true;
            return nullptr;
        }
        return sRealMalloc(size);
    }

    static inline bool sHasRunOut = false;
    static inline void* (*sRealMalloc)(std::size_t) = nullptr;
    ImportPatch mPatch{"malloc", AsReplacement(RunOutOnce)};
};
