#include "doubles/host/HostOperations.h"

#include <windows.h>

#include <utility>

#include "doubles/common/OwnMemory.h"
#include "doubles/host/Host.h"

namespace simhost {

HostOperations::HostOperations() : mMainThread(GetCurrentThreadId()) {}

bool HostOperations::IsDue(const PendingEvent& pending, const std::string& name, const std::string& shortName) const {
    const ScriptedEvent& event = pending.event;
    return (event.operation == name || event.operation == shortName) &&
           (event.nth == kEveryCall || event.nth == Count(event.operation));
}

CallFate HostOperations::Begin(const std::string& suite, const std::string& operation) {
    const std::string name = suite + "/" + operation;
    if (GetCurrentThreadId() != mMainThread) {
        Host().rules.Broken(Rule::kWrongThread, name + " was called on another thread");
    }
    ++mTotals[name];
    ++mInStep[name];
    ++mInStep[operation];
    CallFate fate;
    std::vector<std::function<void()>> actions;
    for (PendingEvent& pending : mEvents) {
        if (!IsDue(pending, name, operation)) {
            continue;
        }
        pending.reached = true;
        const ScriptedEvent& event = pending.event;
        if (event.code != 0 || event.work == Work::kNever) {
            fate = {event.code, event.work == Work::kAlways};
        }
        if (event.action) {
            actions.push_back(event.action);
        }
    }
    if (inject) {
        fate = inject(name).value_or(fate);
    }
    // An action may send a message to the plug-in, whose allocations are not the host's, or throw into it.
    const NotOwnMemory notOwn;
    for (const std::function<void()>& action : actions) {
        action();
    }
    if (withinEachCall) {
        withinEachCall(name);
    }
    return fate;
}

void HostOperations::BeginStep(std::vector<ScriptedEvent> events) {
    mInStep.clear();
    mCalls.clear();
    mEvents.clear();
    for (ScriptedEvent& event : events) {
        Add(std::move(event));
    }
}

void HostOperations::AddCounted(const std::string& operation, std::int64_t nth, std::int32_t code, Work work) {
    Add({operation, Count(operation) + nth, code, nullptr, work});
}

void HostOperations::Fail(const std::string& operation, std::int32_t code, std::int64_t nth) {
    AddCounted(operation, nth, code, Work::kUnlessItFails);
}

void HostOperations::FailAlways(const std::string& operation, std::int32_t code) {
    Add({operation, kEveryCall, code, nullptr, Work::kUnlessItFails});
}

void HostOperations::FailAfterWork(const std::string& operation, std::int32_t code, std::int64_t nth) {
    AddCounted(operation, nth, code, Work::kAlways);
}

void HostOperations::FailAlwaysAfterWork(const std::string& operation, std::int32_t code) {
    Add({operation, kEveryCall, code, nullptr, Work::kAlways});
}

void HostOperations::SkipWork(const std::string& operation, std::int64_t nth) {
    AddCounted(operation, nth, 0, Work::kNever);
}

void HostOperations::During(const std::string& operation, std::function<void()> action) {
    Add({operation, kEveryCall, 0, std::move(action), Work::kUnlessItFails});
}

int HostOperations::Count(const std::string& operation) const {
    const auto found = mInStep.find(operation);
    return found == mInStep.end() ? 0 : found->second;
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

}  // namespace simhost
