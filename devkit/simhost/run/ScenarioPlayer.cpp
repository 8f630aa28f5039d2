#include "simhost/run/ScenarioPlayer.h"

#include <algorithm>
#include <utility>

#include "doubles/host/Host.h"
#include "simhost/checks/ImportWatch.h"
#include "simhost/checks/PresentState.h"
#include "simhost/run/DocumentSteps.h"
#include "simhost/run/HostDialog.h"
#include "simhost/run/HostPreparation.h"

namespace simhost {

namespace {

constexpr int kMessageIndent = 2;

}  // namespace

ScenarioPlayer::ScenarioPlayer(const Scenario& scenario, const RunFolder& folder, const Transcript& transcript)
    : mScenario(scenario),
      mFolder(folder),
      mTranscript(transcript),
      mPlugin((PrepareHost(scenario), folder.Plugin())),
      mChecks(folder, transcript),
      mPanel(folder.Program().parent_path()),
      mSender(mPlugin, mPanel, transcript),
      mMessaging(folder, transcript, mPanel) {
    WatchImports(mPlugin.Module());
}

std::string ScenarioPlayer::WhereItIs() const {
    const std::string step = mStep == nullptr ? "before the first step" : mStep->place;
    return mSender.CurrentMessage().empty() ? step : step + ", message " + mSender.CurrentMessage();
}

void ScenarioPlayer::PlaySteps() {
    for (const Step& step : mScenario.steps) {
        mStep = &step;
        if (!step.say.empty()) {
            mTranscript.Step(step.say);
        }
        Perform(step);
    }
}

void ScenarioPlayer::Perform(const Step& step) {
    if (step.action == "dialog") {
        PerformDialog(step);
    } else if (step.action == "check") {
        PerformCheck(step);
    } else if (step.action == "wait") {
        Sleep(static_cast<DWORD>(step.seconds * 1000));
    } else if (step.action == "write") {
        std::for_each(step.files.begin(), step.files.end(), [&](const auto& file) { mFolder.WriteFile(file); });
    } else if (step.action == "move") {
        mFolder.Move(step.move);
    } else if (step.action == "panel_open") {
        mSender.OpenPanel(step);
    } else if (step.action == "answers") {
        mFolder.WriteAnswers(step.answers);
    } else if (step.action == "switch_to") {
        Host().model.current = Host().model.Named(step.document).name;
    } else if (step.action == "edit") {
        ChangeDocument(Host().model.Named(step.document), step.change);
    } else {
        PerformMessage(step);
    }
}

void ScenarioPlayer::PerformMessage(const Step& step) {
    PrepareStepEvents(step);
    ChangeModelBefore(step, mFolder);
    mChecks.Begin();
    mSender.Send(step);
    ChangeModelAfter(step);
    mChecks.Check(step);
    mMessaging.Check(step);
}

void ScenarioPlayer::PrepareStepEvents(const Step& step) {
    std::vector<ScriptedEvent> events;
    for (const FailureToScript& failure : step.failures) {
        events.push_back({failure.operation, failure.nth, failure.code, nullptr});
    }
    for (const NestedStep& nested : step.nested) {
        events.push_back({nested.operation, nested.nth, 0, [this, &nested] { SendNested(nested); }});
    }
    Host().operations.BeginStep(std::move(events));
}

void ScenarioPlayer::SendNested(const NestedStep& nested) {
    mTranscript.Line(kMessageIndent, "inside " + nested.operation + ":");
    mSender.Send(nested.step.front());
}

void ScenarioPlayer::PerformCheck(const Step& step) {
    const nlohmann::ordered_json present = PresentState();
    if (step.state.contains("menu")) {
        for (const std::string& line : MenuLines(present["menu"])) {
            mTranscript.Line(kMessageIndent, line);
        }
    }
    const std::string difference = DifferenceOfStates(step.state, present);
    if (!difference.empty()) {
        Host().rules.Broken(Rule::kState, step.place + ": " + difference);
    }
}

void ScenarioPlayer::PerformDialog(const Step& step) {
    const DialogRecord record = ShowHostDialog(step.dialog);
    mTranscript.Line(kMessageIndent, "dialog \"" + step.dialog.title + "\": " + Describe(record));
    const DialogRecord expected = RecordFor(step.dialog.end);
    if (record.received != expected.received || record.endedWithOk != expected.endedWithOk) {
        Host().rules.Broken(Rule::kDialog, step.place + ": the dialog \"" + step.dialog.title + "\" was " +
                                               Describe(record) + ", expected " + Describe(expected));
    }
}

}  // namespace simhost
