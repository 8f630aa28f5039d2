#include "doubles/host/Rules.h"

#include <algorithm>
#include <utility>

namespace simhost {

namespace {

constexpr RuleName kRules[] = {
    {Rule::kPropertyList, "property-list"},
    {Rule::kPluginLoad, "plugin-load"},
    {Rule::kReply, "reply"},
    {Rule::kCalls, "calls"},
    {Rule::kContract, "contract"},
    {Rule::kUnrecorded, "unrecorded"},
    {Rule::kHostCalls, "host-calls"},
    {Rule::kBoxes, "boxes"},
    {Rule::kDialog, "dialog"},
    {Rule::kLibrary, "library"},
    {Rule::kMessagingLibrary, "messaging-library"},
    {Rule::kBusCalls, "bus-calls"},
    {Rule::kPanelEvents, "panel-events"},
    {Rule::kForeground, "foreground"},
    {Rule::kCrash, "crash"},
    {Rule::kNotReached, "not-reached"},
    {Rule::kTrapSlot, "trap-slot"},
    {Rule::kSuiteNotHeld, "suite-not-held"},
    {Rule::kSuiteLeak, "suite-leak"},
    {Rule::kReferenceLeak, "reference-leak"},
    {Rule::kStringLeak, "string-leak"},
    {Rule::kPathLeak, "path-leak"},
    {Rule::kBlockLeak, "block-leak"},
    {Rule::kBlockOverrun, "block-overrun"},
    {Rule::kHandleLeak, "handle-leak"},
    {Rule::kStaleReference, "stale-reference"},
    {Rule::kBadArgument, "bad-argument"},
    {Rule::kWrongThread, "wrong-thread"},
    {Rule::kTimerLeft, "timer-left"},
    {Rule::kHookLeft, "hook-left"},
    {Rule::kHostState, "host-state"},
    {Rule::kTicks, "ticks"},
    {Rule::kState, "state"},
    {Rule::kMessagePath, "message-path"},
    {Rule::kReentrancy, "re-entrancy"},
    {Rule::kRandomMessages, "random-messages"},
    {Rule::kTimeLimit, "time-limit"},
    {Rule::kHang, "hang"},
    {Rule::kModalDialog, "modal-dialog"},
    {Rule::kProcessEnded, "process-ended"},
    {Rule::kFailFast, "fail-fast"},
    {Rule::kLostVerdict, "lost-verdict"},
    {Rule::kProcessLeft, "process-left"},
    {Rule::kThreadLeft, "thread-left"},
};

constexpr Rule kRulesOfExpectations[] = {
    Rule::kReply,
    Rule::kCalls,
    Rule::kHostCalls,
    Rule::kBoxes,
    Rule::kDialog,
    Rule::kLibrary,
    Rule::kMessagingLibrary,
    Rule::kBusCalls,
    Rule::kPanelEvents,
    Rule::kForeground,
    Rule::kTicks,
    Rule::kNotReached,
    Rule::kState,
};

}  // namespace

std::span<const RuleName> AllRules() { return kRules; }

const char* NameOf(Rule rule) {
    return std::find_if(std::begin(kRules), std::end(kRules), [&](const auto& row) { return row.rule == rule; })->name;
}

const RuleName* FindRule(std::string_view name) {
    const auto* row = std::find_if(std::begin(kRules), std::end(kRules), [&](const auto& r) { return r.name == name; });
    return row == std::end(kRules) ? nullptr : row;
}

bool IsAboutExpectations(Rule rule) {
    return std::find(std::begin(kRulesOfExpectations), std::end(kRulesOfExpectations), rule) !=
           std::end(kRulesOfExpectations);
}

void RuleBook::Broken(Rule rule, std::string text, std::int64_t amount) {
    Broken(Violation{rule, amount, std::move(text)});
}

void RuleBook::Broken(Violation violation) {
    if (excuse && excuse(violation)) {
        return;
    }
    violation.text += where;
    mViolations.push_back(std::move(violation));
    if (onBroken) {
        onBroken(mViolations.back());
    }
}

}  // namespace simhost
