#include "simhost/checks/StepChecks.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>
#include <vector>

#include "doubles/host/Host.h"
#include "simhost/checks/CallAlignment.h"
#include "simhost/checks/CallDifference.h"
#include "simhost/checks/ImportWatch.h"
#include "simhost/contract/ContractChecks.h"
#include "simhost/contract/RecordedCalls.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

Json AsJson(const ShownBox& box, std::optional<std::uint32_t> style) {
    Json json = {{"caption", box.caption}, {"text", box.text}};
    if (style.value_or(0) != 0) {
        json["style"] = *style;
    }
    return json;
}

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
        TellRest();
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

void StepChecks::TellRest() { mReport.Calls(Library::kPluginCore, contract::TakeCalls()); }

void StepChecks::CheckCalls(const Step& step) {
    const std::vector<PluginCoreCall> calls = contract::TakeCalls();
    const Tick* const ticks = std::get_if<Tick>(&step.action);
    const bool manyTicks = ticks != nullptr && ticks->times > 1;
    mReport.Calls(Library::kPluginCore, calls, !manyTicks);
    if (!step.expect.calls) {
        return;
    }
    const Json& expected = *step.expect.calls;
    const std::string difference = manyTicks ? DifferenceOfTicks(expected, ticks->sent, calls, SecondsSinceBegin())
                                             : DifferenceOf(expected, calls);
    if (difference.empty()) {
        return;
    }
    const std::string text = step.place + ": " + difference;
    if (!manyTicks && mReport.TellsCalls()) {
        mReport.Explain(text, LinesOfCallDifference(expected, calls));
    }
    Host().rules.Broken(Rule::kCalls, text);
}

std::int64_t StepChecks::SecondsSinceBegin() const {
    return std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - mBegan).count();
}

void StepChecks::CheckBoxes(const Step& step) {
    const std::vector<ShownBox> shown = mBoxes.StopAndTake();
    const std::vector<std::uint32_t> styles = TakeBoxStyles();
    Json observed = Json::array();
    for (std::size_t i = 0; i < std::max(shown.size(), step.expect.boxes.size()); ++i) {
        if (i >= shown.size()) {
            Host().rules.Broken(Rule::kBoxes,
                                step.place + ": no box \"" + step.expect.boxes[i].caption + "\" was shown");
            continue;
        }
        const ShownBox& box = shown[i];
        mReport.Line("message box \"" + box.caption + "\": " + box.text);
        observed.push_back(AsJson(box, i < styles.size() ? std::optional(styles[i]) : std::nullopt));
        const bool expected = i < step.expect.boxes.size() && box.caption == step.expect.boxes[i].caption &&
                              box.text == step.expect.boxes[i].text && i < styles.size() &&
                              styles[i] == step.expect.boxes[i].style;
        if (!expected) {
            Host().rules.Broken(Rule::kBoxes, step.place + ": unexpected box \"" + box.caption + "\", \"" + box.text +
                                                  "\", style " + (i < styles.size() ? std::to_string(styles[i]) : "?"));
        }
    }
    mReport.Observed("boxes", std::move(observed));
}

void StepChecks::CheckHostCalls(const Step& step) {
    Json observed = Json::object();
    for (const auto& [operation, expected] : step.expect.hostCalls) {
        const std::int64_t count = Host().operations.Count(operation);
        observed[operation] = count;
        if (count != expected) {
            Host().rules.Broken(Rule::kHostCalls, step.place + ": " + operation + " was called " +
                                                      std::to_string(count) + " times, expected " +
                                                      std::to_string(expected));
        }
    }
    mReport.Observed("host_calls", std::move(observed));
}

void StepChecks::CheckForeground(const Step& step) {
    mWindow.HandleWaitingMessages();
    const std::int64_t switches = mWindow.TakeForegroundSwitches();
    if (switches != 0) {
        mReport.Line("the host's window lost the foreground and got it back");
    }
    mReport.Observed("foreground_switches", switches);
    if (step.expect.foregroundSwitches && *step.expect.foregroundSwitches != switches) {
        Host().rules.Broken(Rule::kForeground, step.place + ": the foreground was lost and regained " +
                                                   std::to_string(switches) + " times, expected " +
                                                   std::to_string(*step.expect.foregroundSwitches));
    }
}

}  // namespace simhost
