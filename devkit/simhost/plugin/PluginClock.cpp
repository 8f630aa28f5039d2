#include "simhost/plugin/PluginClock.h"

#include <ctime>
#include <optional>
#include <stdexcept>

#include "doubles/common/ImportPatch.h"

namespace simhost {

namespace {

// Both are those of the plug-in that was loaded last.
bool sIsInstalled = false;
std::int64_t sSecondsPassed = 0;
// The time of Windows at which the clock stands; nothing: it runs.
std::optional<std::int64_t> sStandsAt;

std::int64_t ReadClock(std::int64_t* seconds) {
    const std::int64_t now = sStandsAt.value_or(static_cast<std::int64_t>(std::time(nullptr))) + sSecondsPassed;
    if (seconds != nullptr) {
        *seconds = now;
    }
    return now;
}

}  // namespace

void InstallPluginClock(HMODULE plugin) {
    sSecondsPassed = 0;
    sIsInstalled = ReplaceImport(plugin, "_time64", AsReplacement(ReadClock));
}

void LetTimePass(std::int64_t seconds) {
    if (!sIsInstalled) {
        throw std::runtime_error("the plug-in does not read the time, so none can pass for it");
    }
    sSecondsPassed += seconds;
}

StandingClock::StandingClock() { sStandsAt = static_cast<std::int64_t>(std::time(nullptr)); }

StandingClock::~StandingClock() { sStandsAt.reset(); }

void StandingClock::LetPass(std::int64_t seconds) { sSecondsPassed += seconds; }

}  // namespace simhost
