#include "simhost/contract/CallStack.h"

#include <memory>
#include <mutex>
#include <utility>

#include "doubles/common/Thread.h"
#include "simhost/contract/DialogAnswerer.h"
#include "simhost/run/FlightRecorder.h"

namespace simhost::contract {

namespace {

struct StackedCall {
    std::unique_ptr<GuardedCall> call;
    CallUnderWay told;
};

// The main thread alone changes what is guarded by it.
Mutex sMutex;
std::optional<CallUnderWay> sUnguarded;
void (*sBeforeCall)(const char* entry) = nullptr;

std::vector<StackedCall>& Stack() {
    static auto* const sStack = new std::vector<StackedCall>;
    return *sStack;
}

}  // namespace

void BeforeEachCall(void (*action)(const char* entry)) { sBeforeCall = action; }

GuardedCall& BeginCall(const char* entry) {
    if (sBeforeCall != nullptr) {
        sBeforeCall(entry);
    }
    auto call = std::make_unique<GuardedCall>(entry);
    CallUnderWay told{entry, call->Number(), VisibleWindows()};
    EnteredEntry(told.entry + ", call " + std::to_string(told.number));
    const std::lock_guard lock(sMutex);
    Stack().push_back({std::move(call), std::move(told)});
    return *Stack().back().call;
}

void EndCall() {
    LeftEntry();
    Stack().back().call->End();
    const std::lock_guard lock(sMutex);
    Stack().pop_back();
}

std::optional<CallUnderWay> EntryUnderWay() {
    const std::lock_guard lock(sMutex);
    return Stack().empty() ? sUnguarded : std::optional(Stack().back().told);
}

UnguardedCalls::UnguardedCalls(const char* entry) {
    CallUnderWay told{entry, 0, VisibleWindows()};
    const std::lock_guard lock(sMutex);
    sUnguarded = std::move(told);
}

UnguardedCalls::~UnguardedCalls() {
    const std::lock_guard lock(sMutex);
    sUnguarded.reset();
}

}  // namespace simhost::contract
