#include "simhost/contract/RecordedCalls.h"

#include <map>
#include <string>
#include <utility>

namespace simhost::contract {

namespace {

std::vector<std::shared_ptr<PluginCoreCall>>& Untaken() {
    static auto* const sCalls = new std::vector<std::shared_ptr<PluginCoreCall>>;
    return *sCalls;
}

// How often each entry was called.
std::map<std::string, int>& Numbers() {
    static auto* const sNumbers = new std::map<std::string, int>;
    return *sNumbers;
}

}  // namespace

RecordedCall RecordCall(const char* entry) {
    static std::size_t sPlaces = 0;
    auto call = std::make_shared<PluginCoreCall>();
    call->entry = entry;
    Untaken().push_back(call);
    return {std::move(call), ++Numbers()[entry], sPlaces++};
}

CallJournal& Journal() {
    static auto* const sJournal = new CallJournal;
    return *sJournal;
}

void ForgetCalls() {
    Untaken().clear();
    Numbers().clear();
}

bool WasAnyCalled() { return !Numbers().empty(); }

std::vector<PluginCoreCall> TakeCalls() {
    std::vector<PluginCoreCall> calls;
    for (const auto& call : std::exchange(Untaken(), {})) {
        // One that is under way is still written to.
        const bool isOver = call.use_count() == 1;
        calls.push_back(isOver ? std::move(*call) : *call);
    }
    return calls;
}

}  // namespace simhost::contract
