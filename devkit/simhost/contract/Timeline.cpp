#include "simhost/contract/Timeline.h"

#include <algorithm>
#include <map>
#include <string>

#include "simhost/contract/ContractBook.h"

namespace simhost::contract {

namespace {

// What the plug-in goes on calling.
constexpr const char* kAskedToTheEnd[] = {"GetAPIVersion", "GetSettings", "GetSocketPort"};

// One PluginCore per process.
struct History {
    bool isTerminated = false;
    std::map<std::string, std::int32_t> lastAnswer;
};

History& TheHistory() {
    static auto* const sHistory = new History;
    return *sHistory;
}

bool IsAskedToTheEnd(const std::string& entry) {
    return std::any_of(std::begin(kAskedToTheEnd), std::end(kAskedToTheEnd),
                       [&](const char* name) { return entry == name; });
}

void CheckAfterTerminate(const PluginCoreCall& call, int number, const History& history) {
    const auto before = history.lastAnswer.find(call.entry);
    if (!IsAskedToTheEnd(call.entry) || before == history.lastAnswer.end()) {
        return;
    }
    Book().Tried(ClauseId::kAfterTerminate);
    if (before->second == 0 && call.answer != 0 && !call.exception) {
        Book().Broken(
            {ClauseId::kAfterTerminate, call.entry, number,
             "answered " + std::to_string(call.answer) + " after TerminatePluginCoreInterface, and 0 before"});
    }
}

}  // namespace

void CheckTimeline(const PluginCoreCall& call, int number) {
    History& history = TheHistory();
    if (history.isTerminated) {
        CheckAfterTerminate(call, number, history);
    } else {
        history.lastAnswer[call.entry] = call.answer;
    }
    if (call.entry == "TerminatePluginCoreInterface") {
        history.isTerminated = true;
    } else if (call.entry == "InitializePluginCoreInterface") {
        history.isTerminated = false;
    }
}

bool IsTerminated() { return TheHistory().isTerminated; }

}  // namespace simhost::contract
