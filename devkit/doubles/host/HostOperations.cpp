#include "doubles/host/HostOperations.h"

#include <windows.h>

#include <utility>

#include "doubles/host/Host.h"

namespace simhost {

HostOperations::HostOperations() : mMainThread(GetCurrentThreadId()) {}

void HostOperations::BeginStep(std::vector<ScriptedEvent> events) {
    mInStep.clear();
    mEvents.clear();
    for (ScriptedEvent& event : events) {
        mEvents.push_back({std::move(event)});
    }
}

std::vector<ScriptedEvent> HostOperations::UnreachedEvents() const {
    std::vector<ScriptedEvent> unreached;
    for (const PendingEvent& pending : mEvents) {
        if (!pending.reached) {
            unreached.push_back(pending.event);
        }
    }
    return unreached;
}

std::int32_t HostOperations::Begin(const std::string& operation) {
    if (GetCurrentThreadId() != mMainThread) {
        Host().rules.Broken(Rule::kWrongThread, operation + " was called on another thread");
    }
    ++mTotals[operation];
    const std::int64_t nth = ++mInStep[operation];
    std::int32_t code = 0;
    for (PendingEvent& pending : mEvents) {
        if (pending.reached || pending.event.operation != operation || pending.event.nth != nth) {
            continue;
        }
        pending.reached = true;
        code = pending.event.code;
        if (pending.event.action) {
            pending.event.action();
        }
    }
    return code;
}

std::int64_t HostOperations::CountInStep(const std::string& operation) const {
    const auto found = mInStep.find(operation);
    return found == mInStep.end() ? 0 : found->second;
}

}  // namespace simhost
