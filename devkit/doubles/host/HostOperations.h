// The one place through which every host operation goes: counts it, lets it fail when the scenario says so, and sends
// messages from inside it. Operations are named suite, slash, operation: "AI Font Suite/GetDefaultFont".
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace simhost {

// What happens at the n-th call of an operation, counted from 1 since the step began.
struct ScriptedEvent {
    std::string operation;
    std::int64_t nth = 1;
    std::int32_t code = 0;         // what the operation then answers instead of doing anything; 0: it goes on
    std::function<void()> action;  // run before the operation does anything; may be empty
};

class HostOperations {
  public:
    HostOperations();

    // From now on counts anew for the step and follows its events.
    void BeginStep(std::vector<ScriptedEvent> events);
    // The events of the step that were never reached.
    std::vector<ScriptedEvent> UnreachedEvents() const;

    // Called first by every operation. A result other than 0 is to be returned at once.
    std::int32_t Begin(const std::string& operation);

    std::int64_t CountInStep(const std::string& operation) const;
    const std::map<std::string, std::int64_t>& Totals() const { return mTotals; }

  private:
    struct PendingEvent {
        ScriptedEvent event;
        bool reached = false;
    };

    unsigned long mMainThread;
    std::map<std::string, std::int64_t> mInStep;
    std::map<std::string, std::int64_t> mTotals;
    std::vector<PendingEvent> mEvents;
};

}  // namespace simhost
