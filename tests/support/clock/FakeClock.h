// The calendar as the code linked into this test program reads it, as long as the clock lives: it stands still until
// the test moves it. One at a time.
#pragma once

#include <windows.h>

#include <cstdint>

#include "doubles/common/ImportPatch.h"

class FakeClock {
  public:
    explicit FakeClock(std::int64_t seconds) { Set(seconds); }

    // Seconds since 1970.
    static void Set(std::int64_t seconds) { sSeconds = seconds; }
    static void Advance(std::int64_t seconds) { sSeconds += seconds; }

  private:
    static void WINAPI Read(FILETIME* time) {
        constexpr std::int64_t kSecondsFrom1601To1970 = 11644473600;
        const std::int64_t ticks = (sSeconds + kSecondsFrom1601To1970) * 10'000'000;
        *time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    }

    static inline std::int64_t sSeconds = 0;
    ImportPatch mPatch{"GetSystemTimeAsFileTime", AsReplacement(Read)};
};
