// The calendar as the plug-in reads it: that of Windows, moved on by what a scenario lets pass. So a scenario of ten
// seconds takes none.
// Thread: main.
#pragma once

#include <windows.h>

#include <cstdint>

namespace simhost {

// Takes over the loaded plug-in's view of the time, until it is unloaded. A plug-in that never asks Windows for the
// time is left alone.
void InstallPluginClock(HMODULE plugin);

// Moves the plug-in's clock on. Throws std::runtime_error when no plug-in has one.
void LetTimePass(std::int64_t seconds);

// While there is one, the plug-in's time stands still, but for what is let pass.
class StandingClock {
  public:
    StandingClock();
    ~StandingClock();
    StandingClock(const StandingClock&) = delete;
    StandingClock& operator=(const StandingClock&) = delete;

    // Nothing happens when no plug-in has a clock.
    void LetPass(std::int64_t seconds);
};

}  // namespace simhost
