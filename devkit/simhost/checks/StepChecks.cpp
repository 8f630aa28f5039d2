#include "simhost/checks/StepChecks.h"

#include <algorithm>
#include <vector>

#include "doubles/host/Host.h"
#include "simhost/checks/CallDifference.h"
#include "simhost/checks/ImportWatch.h"
#include "simhost/contract/ContractChecks.h"
#include "simhost/contract/GuardedCall.h"
#include "simhost/report/CallLines.h"

namespace simhost {

namespace {

constexpr int kIndent = 6;

}  // namespace

void StepChecks::Begin(const Step& step) {
    mWindow.TakeForegroundSwitches();
    if (!step.expect.anything) {
        mBoxes.Watch();
    }
    mBegan = std::chrono::steady_clock::now();
}

void StepChecks::Check(const Step& step) {
    if (step.expect.anything) {
        ShowCalls(contract::TakeCalls());
        contract::ReportFindings(step.place);
        return;
    }
    CheckCalls(step);
    contract::ReportFindings(step.place);
    CheckBoxes(step);
    CheckHostCalls(step);
    CheckForeground(step);
    for (const ScriptedEvent& event : Host().operations.UnreachedEvents()) {
        Host().rules.Broken(Rule::kNotReached, step.place + ": call " + std::to_string(event.nth) + " of " +
                                                   event.operation + " never came");
    }
}

void StepChecks::CheckCalls(const Step& step) {
    const std::vector<PluginCoreCall> calls = contract::TakeCalls();
    const Tick* const ticks = std::get_if<Tick>(&step.action);
    const bool manyTicks = ticks != nullptr && ticks->times > 1;
    if (!manyTicks) {
        ShowCalls(calls);
    }
    if (!step.expect.calls) {
        return;
    }
    const std::string difference = manyTicks
                                       ? DifferenceOfTicks(*step.expect.calls, ticks->sent, calls, SecondsSinceBegin())
                                       : DifferenceOf(*step.expect.calls, calls);
    if (!difference.empty()) {
        Host().rules.Broken(Rule::kCalls, step.place + ": " + difference);
    }
}

void StepChecks::ShowCalls(const std::vector<PluginCoreCall>& calls) {
    for (const PluginCoreCall& call : calls) {
        for (const std::string& line : LinesOf(call)) {
            mTranscript.Line(kIndent, line);
        }
    }
}

std::int64_t StepChecks::SecondsSinceBegin() const {
    return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - mBegan).count();
}

void StepChecks::CheckBoxes(const Step& step) {
    const std::vector<ShownBox> shown = mBoxes.StopAndTake();
    const std::vector<std::uint32_t> styles = TakeBoxStyles();
    for (std::size_t i = 0; i < std::max(shown.size(), step.expect.boxes.size()); ++i) {
        if (i >= shown.size()) {
            Host().rules.Broken(Rule::kBoxes,
                                step.place + ": no box \"" + step.expect.boxes[i].caption + "\" was shown");
            continue;
        }
        const ShownBox& box = shown[i];
        mTranscript.Line(kIndent, "message box \"" + box.caption + "\": " + box.text);
        const bool expected = i < step.expect.boxes.size() && box.caption == step.expect.boxes[i].caption &&
                              box.text == step.expect.boxes[i].text && i < styles.size() &&
                              styles[i] == step.expect.boxes[i].style;
        if (!expected) {
            Host().rules.Broken(Rule::kBoxes, step.place + ": unexpected box \"" + box.caption + "\", \"" + box.text +
                                                  "\", style " + (i < styles.size() ? std::to_string(styles[i]) : "?"));
        }
    }
}

void StepChecks::CheckHostCalls(const Step& step) {
    for (const auto& [operation, expected] : step.expect.hostCalls) {
        const std::int64_t count = Host().operations.Count(operation);
        if (count != expected) {
            Host().rules.Broken(Rule::kHostCalls, step.place + ": " + operation + " was called " +
                                                      std::to_string(count) + " times, expected " +
                                                      std::to_string(expected));
        }
    }
}

void StepChecks::CheckForeground(const Step& step) {
    mWindow.HandleWaitingMessages();
    const std::int64_t switches = mWindow.TakeForegroundSwitches();
    if (switches != 0) {
        mTranscript.Line(kIndent, "the host's window lost the foreground and got it back");
    }
    if (step.expect.foregroundSwitches && *step.expect.foregroundSwitches != switches) {
        Host().rules.Broken(Rule::kForeground, step.place + ": the foreground was lost and regained " +
                                                   std::to_string(switches) + " times, expected " +
                                                   std::to_string(*step.expect.foregroundSwitches));
    }
}

}  // namespace simhost
