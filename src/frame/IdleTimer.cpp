#include "frame/IdleTimer.h"

#include <windows.h>

#include "frame/base/PluginGlobals.h"
#include "frame/base/SuiteOperations.h"
#include "host/TimerSuite.h"
#include "panel/PortNumberExchange.h"
#include "plugincore/PCILoader.h"
#include "support/Log.h"
#include "support/ResultCodes.h"
#include "support/WindowsTime.h"

namespace {

constexpr std::int32_t kEveryTick = 1;            // the period
constexpr std::int64_t kSecondsWithoutCheck = 9;  // more than these have to pass
constexpr std::uint8_t kProcess = 1;

// Seconds since 1970; 0, so that the first tick checks.
std::int64_t sLastEnabledCheck = 0;

// Runs `use` with the timer suite. A refusal of the host is the result.
template <class Use>
std::int32_t WithTimerSuite(const char* operation, Use use) {
    // The blanks at the end are intentional: tools that read the trace match the whole line.
    LogMessage(kLogEntry, "Entering %s ", operation);
    std::int32_t result = kNoErr;
    MomentarySuite<AITimerSuite> timers(kAITimerSuite, kAITimerSuiteVersion);
    try {
        timers.AcquireOrThrow();
        use(timers);
    } catch (std::int32_t code) {
        result = code;
    }
    timers.ReleaseIfHeld();
    LogMessage(kLogExit, "Exiting %s ", operation);
    return result;
}

// The C runtime's time() would ask Windows for the time zone as well, which costs more than the rest of the tick.
std::int64_t CurrentTime() {
    FILETIME now;
    GetSystemTimeAsFileTime(&now);
    return SecondsSince1970(now);
}

void StopTimerIfPluginCoreIsDisabled() {
    const std::int64_t now = CurrentTime();
    if (now - sLastEnabledCheck <= kSecondsWithoutCheck) {
        return;
    }
    sLastEnabledCheck = now;
    if (!PluginCoreIsEnabled()) {
        RemoveTimers();
    }
}

}  // namespace

std::int32_t AddTimers(SPInterfaceMessage* message) {
    return WithTimerSuite("AddTimers", [message](const MomentarySuite<AITimerSuite>& timers) {
        ThrowIfError(timers->AddTimer(message->d.self, "Quorvel AIPlugin Timer", kEveryTick, &sGlobals->idleTimer));
    });
}

std::int32_t RemoveTimers() {
    return WithTimerSuite("RemoveTimers", [](const MomentarySuite<AITimerSuite>& timers) {
        const AITimerHandle timer = sGlobals == nullptr ? nullptr : sGlobals->idleTimer;
        if (timer == nullptr) {
            return;
        }
        AIBoolean active = 0;
        ThrowIfError(timers->GetTimerActive(timer, &active));
        if (active != 0) {
            ThrowIfError(timers->SetTimerActive(timer, 0));
        }
    });
}

std::int32_t HandleIdleTick() {
    // Only a started plug-in has a timer. A tick without one comes from elsewhere; ignore it.
    if (sGlobals == nullptr) {
        return kNoErr;
    }
    StopTimerIfPluginCoreIsDisabled();
    RegisterPortNumberListener();
    const PCILoader& pluginCore = RequirePluginCore();
    pluginCore.pfIdleEvent();
    pluginCore.pfProcessPanelMessages(kProcess);
    return kNoErr;
}
