#include "simhost/plugin/PluginClock.h"

#include <optional>
#include <stdexcept>

#include "doubles/common/ImportPatch.h"

namespace simhost {

namespace {

// Both are those of the plug-in that was loaded last.
bool sIsInstalled = false;
std::int64_t sSecondsPassed = 0;
constexpr std::int64_t kStepsPerSecond = 10'000'000;
// The time of Windows at which the clock stands; nothing: it runs.
std::optional<std::int64_t> sStandsAt;

// In steps of 100 ns since 1601, as Windows counts.
std::int64_t WindowsTime() {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return static_cast<std::int64_t>((static_cast<std::uint64_t>(now.dwHighDateTime) << 32) | now.dwLowDateTime);
}

void WINAPI ReadClock(FILETIME* time) {
    const std::int64_t now = sStandsAt.value_or(WindowsTime()) + sSecondsPassed * kStepsPerSecond;
    *time = {static_cast<DWORD>(now), static_cast<DWORD>(now >> 32)};
}

}  // namespace

void InstallPluginClock(HMODULE plugin) {
    sSecondsPassed = 0;
    sIsInstalled = ReplaceImport(plugin, "GetSystemTimeAsFileTime", AsReplacement(ReadClock));
}

void LetTimePass(std::int64_t seconds) {
    if (!sIsInstalled) {
        throw std::runtime_error("the plug-in does not read the time, so none can pass for it");
    }
    sSecondsPassed += seconds;
}

StandingClock::StandingClock() { sStandsAt = WindowsTime(); }

StandingClock::~StandingClock() { sStandsAt.reset(); }

void StandingClock::LetPass(std::int64_t seconds) { sSecondsPassed += seconds; }

}  // namespace simhost
