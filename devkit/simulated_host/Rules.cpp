#include "simulated_host/Rules.h"

#include <algorithm>
#include <utility>

namespace simhost {

namespace {

constexpr RuleDescription kRules[] = {
    {Rule::kPropertyList, "property-list", "the file's property list names an entry point of a plug-in"},
    {Rule::kReply, "reply", "the plug-in answers a message as the scenario expects"},
    {Rule::kCalls, "calls", "exactly the expected calls reach the PluginCore"},
    {Rule::kHostCalls, "host-calls", "the counted host operations are called as often as expected"},
    {Rule::kBoxes, "boxes", "exactly the expected message boxes are shown"},
    {Rule::kDialog, "dialog", "a dialog of the host is treated as expected"},
    {Rule::kLibrary, "library", "the PluginCore was loaded from the expected file"},
    {Rule::kMessagingLibrary, "messaging-library", "the plug-in loads the messaging library from the expected file"},
    {Rule::kBusCalls, "bus-calls", "exactly the expected calls of the plug-in reach the messaging library"},
    {Rule::kPanelEvents, "panel-events", "the panel is told exactly what is expected"},
    {Rule::kForeground, "foreground", "the host's window loses and regains the foreground as expected"},
    {Rule::kCrash, "crash", "no message ends the host's process"},
    {Rule::kNotReached, "not-reached", "scripted failures and nested messages are reached"},
    {Rule::kTrapSlot, "trap-slot", "only suite slots are called that the host offers"},
    {Rule::kSuiteNotHeld, "suite-not-held", "a suite is used and released only while it is held"},
    {Rule::kSuiteLeak, "suite-leak", "every acquired suite is released"},
    {Rule::kReferenceLeak, "reference-leak", "every reference of the text engine is given back"},
    {Rule::kStringLeak, "string-leak", "every string of the host is given back"},
    {Rule::kPathLeak, "path-leak", "every file path of the host is given back"},
    {Rule::kBlockLeak, "block-leak", "every block of memory is given back"},
    {Rule::kBlockOverrun, "block-overrun", "nothing is written behind the end of a block"},
    {Rule::kHandleLeak, "handle-leak", "every handle of found art is given back"},
    {Rule::kStaleReference, "stale-reference", "nothing is used after it was given back, and nothing made up"},
    {Rule::kBadArgument, "bad-argument", "host operations are called with what they need"},
    {Rule::kWrongThread, "wrong-thread", "the host is called on its main thread only"},
    {Rule::kTimerLeft, "timer-left", "no timer is active after shut-down"},
    {Rule::kHookLeft, "hook-left", "no dialog is touched after shut-down"},
    {Rule::kTicks, "ticks", "as many ticks are sent as expected"},
    {Rule::kState, "state", "what the plug-in has left in the host is as expected"},
    {Rule::kMessagePath, "message-path", "the path in a message stays the host's"},
    {Rule::kTimeLimit, "time-limit", "the run ends in time and leaves a result"},
};

}  // namespace

std::span<const RuleDescription> AllRules() { return kRules; }

const char* NameOf(Rule rule) {
    return std::find_if(std::begin(kRules), std::end(kRules), [&](const auto& row) { return row.rule == rule; })->name;
}

const RuleDescription* FindRule(std::string_view name) {
    const auto* row = std::find_if(std::begin(kRules), std::end(kRules), [&](const auto& r) { return r.name == name; });
    return row == std::end(kRules) ? nullptr : row;
}

void RuleBook::Broken(Rule rule, std::string text, std::int64_t amount) {
    mViolations.push_back({rule, amount, std::move(text)});
}

}  // namespace simhost
