// The one place through which every host operation goes. It counts and records the calls, and plays scripted events:
// fault injection, and actions that run inside a call. Scenarios script a step at a time, unit tests script a call at a
// time; both use the same events. Operations are named suite, slash, operation: "AI Font Suite/GetDefaultFont".
//
// Thread: main.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace simhost {

// Whether an operation does its work at a scripted call.
enum class Work {
    kUnlessItFails,
    kAlways,  // fills in its outputs although it fails: finds callers who do not look at the result
    kNever,   // leaves its outputs alone although it may succeed
};

// The number of an event that happens at each call.
inline constexpr std::int64_t kEveryCall = 0;

// What happens at the n-th call of an operation.
struct ScriptedEvent {
    std::string operation;         // without suite and slash: the operation of that name, whatever its suite
    std::int64_t nth = 1;          // counted from 1 since the step began, or kEveryCall
    std::int32_t code = 0;         // the result; 0: the operation's own
    std::function<void()> action;  // runs before the operation does its work; may be empty
    Work work = Work::kUnlessItFails;
};

// What the script says about one call.
struct CallFate {
    std::int32_t code = 0;
    bool works = true;
};

class HostOperations {
  public:
    HostOperations();

    // --- for the suites ---

    // Records a call as text, for example "EnableItem(0x170000000010)".
    void Record(std::string call) { mCalls.push_back(std::move(call)); }
    // Called first by every operation.
    CallFate Begin(const std::string& suite, const std::string& operation);

    // --- for scenarios ---

    // Starts a step: clears counts and record, and replaces the events.
    void BeginStep(std::vector<ScriptedEvent> events);
    const std::map<std::string, std::int64_t>& Totals() const { return mTotals; }
    // Runs inside each call, before the operation does its work; may be empty.
    std::function<void(const std::string& name)> withinEachCall;

    // --- for unit tests; `nth` counts from the next call, which is 1 ---

    // The call answers `code` and does nothing.
    void Fail(const std::string& operation, std::int32_t code, std::int64_t nth = 1);
    void FailAlways(const std::string& operation, std::int32_t code);
    // The call answers `code` and fills in its outputs all the same.
    void FailAfterWork(const std::string& operation, std::int32_t code, std::int64_t nth = 1);
    void FailAlwaysAfterWork(const std::string& operation, std::int32_t code);
    // The call answers 0 and leaves its outputs alone.
    void SkipWork(const std::string& operation, std::int64_t nth = 1);
    // `action` runs inside each call, before the operation does its work.
    void During(const std::string& operation, std::function<void()> action);
    // Removes all events, reached or not.
    void ForgetEvents() { mEvents.clear(); }

    // Decides the fate of each call of an operation, beside the events; nothing: as without it. May be empty.
    std::function<std::optional<CallFate>(const std::string& name)> inject;

    // The recorded calls since the last Clear().
    const std::vector<std::string>& Calls() const { return mCalls; }
    // Clears the record; counts and events stay.
    void Clear() { mCalls.clear(); }

    // --- for both ---

    // The number of calls since the step began; by full or short name.
    int Count(const std::string& operation) const;
    // The events that no call reached.
    std::vector<ScriptedEvent> UnreachedEvents() const;

  private:
    struct PendingEvent {
        ScriptedEvent event;
        bool reached = false;
    };

    void Add(ScriptedEvent event) { mEvents.push_back({std::move(event)}); }
    void AddCounted(const std::string& operation, std::int64_t nth, std::int32_t code, Work work);
    bool IsDue(const PendingEvent& pending, const std::string& name, const std::string& shortName) const;

    unsigned long mMainThread;
    std::unordered_map<std::string, int> mInStep;  // by full and by short name
    std::map<std::string, std::int64_t> mTotals;   // by full name
    std::vector<PendingEvent> mEvents;
    std::vector<std::string> mCalls;
};

}  // namespace simhost
