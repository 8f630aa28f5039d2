#include "simhost/contract/Timeline.h"

#include <algorithm>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "simhost/contract/ContractBook.h"
#include "simhost/contract/MadeThings.h"
#include "simhost/contract/PluginCoreWatch.h"

namespace simhost::contract {

namespace {

// What the plug-in goes on calling.
constexpr const char* kAskedToTheEnd[] = {"GetAPIVersion", "GetSettings", "GetSocketPort"};

// One PluginCore in a process at a time.
struct History {
    bool isTerminated = false;
    std::map<std::string, PluginCoreCall> lastCalls;  // before that, by entry
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
    const auto found = history.lastCalls.find(call.entry);
    if (!IsAskedToTheEnd(call.entry) || found == history.lastCalls.end()) {
        return;
    }
    Book().Tried(ClauseId::kAfterTerminate);
    const PluginCoreCall& before = found->second;
    // What was refused before, or in a smaller buffer, is no promise.
    if (before.answer != 0 || before.exception || call.exception || before.arguments != call.arguments) {
        return;
    }
    const auto broken = [&](const std::string& now, const std::string& then) {
        Book().Broken({ClauseId::kAfterTerminate, call.entry, number,
                       "answered " + now + " after TerminatePluginCoreInterface, and " + then + " before"});
    };
    if (call.answer != 0) {
        broken(std::to_string(call.answer), "0");
    } else if (call.results != before.results) {
        broken(call.results.dump(), before.results.dump());
    }
}

void CheckLeftovers(const PluginCoreCall& call, int number) {
    for (const ClauseId clause :
         {ClauseId::kHookLeft, ClauseId::kWindowLeft, ClauseId::kThreadLeft, ClauseId::kProcessLeft}) {
        Book().Tried(clause);
    }
    for (const Leftover& left : Leftovers(WatchedLibrary())) {
        Book().Broken({left.clause, call.entry, number, "it left " + left.what});
    }
}

struct Patience {
    const char* entry;
    double milliseconds;  // 0: a person may be asked
};

constexpr Patience kPatience[] = {{"IdleEvent", 10},
                                  {"ProcessPanelMessages", 10},
                                  {"InvokeResolveDialog", 0},
                                  {"InvokeCommandDialog", 0},
                                  {"InvokeRestrictedFontsDialog", 0}};
constexpr double kUsualPatience = 100;

void CheckTime(const PluginCoreCall& call, int number) {
    const auto* const own = std::find_if(std::begin(kPatience), std::end(kPatience),
                                         [&](const Patience& patience) { return call.entry == patience.entry; });
    const double limit = own == std::end(kPatience) ? kUsualPatience : own->milliseconds;
    if (limit <= 0) {
        return;
    }
    Book().Tried(ClauseId::kSlow);
    if (call.milliseconds.value_or(0) > limit) {
        Book().Broken({ClauseId::kSlow, call.entry, number,
                       "took " + std::to_string(static_cast<int>(*call.milliseconds)) + " ms"});
    }
}

}  // namespace

void CheckTimeline(const PluginCoreCall& call, int number, bool isTimed) {
    History& history = TheHistory();
    if (isTimed) {
        CheckTime(call, number);
    }
    if (history.isTerminated) {
        CheckAfterTerminate(call, number, history);
    } else {
        history.lastCalls[call.entry] = call;
    }
    if (call.entry == "TerminatePluginCoreInterface") {
        history.isTerminated = true;
        CheckLeftovers(call, number);
    } else if (call.entry == "InitializePluginCoreInterface") {
        history.isTerminated = false;
    }
}

void ForgetTimeline() { TheHistory() = {}; }

}  // namespace simhost::contract
