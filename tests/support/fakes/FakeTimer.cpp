#include "support/fakes/FakeTimer.h"

#include "doubles/common/OwnMemory.h"
#include "support/fakes/FakeHost.h"

namespace {

AIErr AddTimer(SPPluginRef self, const char* name, std::int32_t periodInTicks, AITimerHandle* timer) {
    const AIErr answer = sFakeHost->Record("AddTimer", Quoted(name) + ", " + std::to_string(periodInTicks) +
                                                           (self == sFakeHost->plugin ? "" : ", for another plug-in"));
    if (answer == 0) {
        *timer = sFakeHost->timer.handle;
        sFakeHost->timer.isActive = 1;
    }
    return answer;
}

AIErr GetTimerActive(AITimerHandle timer, AIBoolean* active) {
    *active = sFakeHost->timer.isActive;
    return sFakeHost->Record("GetTimerActive", Address(timer));
}

AIErr SetTimerActive(AITimerHandle timer, AIBoolean active) {
    const AIErr answer = sFakeHost->Record("SetTimerActive", Address(timer) + ", " + std::to_string(active));
    if (answer == 0) {
        sFakeHost->timer.isActive = active;
    }
    return answer;
}

AITimerSuite FilledTimerSuite() {
    AITimerSuite suite{};
    suite.AddTimer = kWithOwnMemory<AddTimer>;
    suite.GetTimerActive = kWithOwnMemory<GetTimerActive>;
    suite.SetTimerActive = kWithOwnMemory<SetTimerActive>;
    return suite;
}

}  // namespace

const AITimerSuite& FakeTimerSuite() {
    static const AITimerSuite suite = FilledTimerSuite();
    return suite;
}
