#include "simhost/run/ScenarioPlayer.h"

#include <utility>
#include <vector>

#include "doubles/host/Host.h"
#include "simhost/checks/ImportWatch.h"
#include "simhost/contract/PluginCoreWatch.h"
#include "simhost/plugin/PluginClock.h"
#include "simhost/run/HostPreparation.h"
#include "simhost/run/Performance.h"
#include "simhost/verbs/VerbTable.h"

namespace simhost {

namespace {

constexpr int kMessageIndent = 2;

}  // namespace

ScenarioPlayer::ScenarioPlayer(const Scenario& scenario, const RunFolder& folder, Transcript& transcript)
    : mScenario(scenario),
      mFolder(folder),
      mTranscript(transcript),
      mPlugin((PrepareHost(scenario), folder.Plugin())),
      mChecks(transcript),
      mPanel(folder.Program().parent_path()),
      mDriver(mPlugin),
      mMessaging(folder, transcript, mPanel) {
    WatchImports(mPlugin.Module());
    contract::WatchPluginCore(mPlugin.Module());
    InstallPluginClock(mPlugin.Module());
}

std::string ScenarioPlayer::WhereItIs() const {
    const std::string step = mStep == nullptr ? "before the first step" : mStep->place;
    return mDriver.Current().empty() ? step : step + ", message " + mDriver.Current();
}

void ScenarioPlayer::PlaySteps() {
    for (const Step& step : mScenario.steps) {
        mStep = &step;
        if (!step.say.empty()) {
            mTranscript.Step(step.say);
        }
        Play(step);
    }
}

void ScenarioPlayer::Play(const Step& step) {
    if (step.verb->reachesPlugin) {
        PlayToPlugin(step);
    } else {
        PerformVerb(step);
    }
}

void ScenarioPlayer::PlayToPlugin(const Step& step) {
    PrepareStepEvents(step);
    mChecks.Begin(step);
    PerformVerb(step);
    mChecks.Check(step);
    mMessaging.Check(step);
}

void ScenarioPlayer::PerformVerb(const Step& step) {
    Performance performance(step, mDriver, mPlugin, mPanel, mFolder, mTranscript,
                            [this](const Step& within) { Play(within); });
    if (step.verb->needsPlugin && !mPlugin.IsLoaded()) {
        performance.NotReached("the plug-in is not loaded any more");
        return;
    }
    step.verb->perform(step.action, performance);
}

void ScenarioPlayer::PrepareStepEvents(const Step& step) {
    std::vector<ScriptedEvent> events;
    for (const FailureToScript& failure : step.failures) {
        events.push_back({failure.operation, failure.nth, failure.code, nullptr});
    }
    for (const NestedStep& nested : step.nested) {
        events.push_back({nested.operation, nested.nth, 0, [this, &nested] { PlayNested(nested); }});
    }
    Host().operations.BeginStep(std::move(events));
}

void ScenarioPlayer::PlayNested(const NestedStep& nested) {
    mTranscript.Line(kMessageIndent, "inside " + nested.operation + ":");
    PerformVerb(nested.step.front());
}

}  // namespace simhost
