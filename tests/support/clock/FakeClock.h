// The calendar as the code linked into this test program reads it, as long as the clock lives: it stands still until
// the test moves it. One at a time.
#pragma once

#include <cstdint>

#include "doubles/common/ImportPatch.h"

class FakeClock {
  public:
    explicit FakeClock(std::int64_t seconds) { Set(seconds); }

    // Seconds since 1970.
    static void Set(std::int64_t seconds) { sSeconds = seconds; }
    static void Advance(std::int64_t seconds) { sSeconds += seconds; }

  private:
    static std::int64_t Read(std::int64_t* seconds) {
        if (seconds != nullptr) {
            *seconds = sSeconds;
        }
        return sSeconds;
    }

    static inline std::int64_t sSeconds = 0;
    ImportPatch mPatch{"_time64", AsReplacement(Read)};
};
