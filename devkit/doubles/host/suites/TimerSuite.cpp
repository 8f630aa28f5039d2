// "AI Timer Suite": the plug-in's timers.
#include "host/TimerSuite.h"

#include "doubles/host/suites/AllSuites.h"
#include "doubles/host/suites/SuiteCall.h"

namespace simhost {

namespace {

constexpr const char* kName = "AI Timer Suite";

AIErr AddTimer(SPPluginRef self, const char* name, std::int32_t periodInTicks, AITimerHandle* timer) {
    const SuiteCall call(kName, "AddTimer", name, periodInTicks);
    return call.Perform([&] {
        if (self == nullptr || name == nullptr || periodInTicks < 1 || timer == nullptr) {
            return call.BadArgument("plug-in, name, period or target is missing");
        }
        if (!call.IsOwnReference(self)) {
            return kBadParameterErr;
        }
        *timer = static_cast<AITimerHandle>(Host().model.timers.Add(Timer{name, periodInTicks, 1}));
        return 0;
    });
}

AIErr GetTimerActive(AITimerHandle handle, AIBoolean* active) {
    const SuiteCall call(kName, "GetTimerActive", handle);
    return call.Perform([&] {
        const Timer* const timer = Host().model.timers.Find(handle);
        if (timer == nullptr || active == nullptr) {
            return call.Stale(Host().model.timers, handle, "timer");
        }
        *active = timer->active;
        return 0;
    });
}

AIErr SetTimerActive(AITimerHandle handle, AIBoolean active) {
    const SuiteCall call(kName, "SetTimerActive", handle, active);
    return call.Perform([&] {
        Timer* const timer = Host().model.timers.Find(handle);
        if (timer == nullptr) {
            return call.Stale(Host().model.timers, handle, "timer");
        }
        timer->active = active;
        return 0;
    });
}

}  // namespace

void InstallTimerSuite(SuiteStore& suites) {
    auto& table = suites.Table<AITimerSuite>(kName);
    table.AddTimer = &AddTimer;
    table.GetTimerActive = &GetTimerActive;
    table.SetTimerActive = &SetTimerActive;
}

}  // namespace simhost
