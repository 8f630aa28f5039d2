#include "simhost/run/ScenarioPlayer.h"

#include <exception>
#include <utility>
#include <vector>

#include "doubles/host/Host.h"
#include "simhost/checks/HostStateWatch.h"
#include "simhost/checks/ImportWatch.h"
#include "simhost/contract/CallStack.h"
#include "simhost/contract/PluginCoreWatch.h"
#include "simhost/contract/RecordedCalls.h"
#include "simhost/plugin/PluginClock.h"
#include "simhost/plugin/ProgramDisguise.h"
#include "simhost/run/FlightRecorder.h"
#include "simhost/run/HostPreparation.h"
#include "simhost/run/Performance.h"
#include "simhost/verbs/VerbTable.h"

namespace simhost {

ScenarioPlayer::ScenarioPlayer(const Scenario& scenario, const RunFolder& folder, RunReport& report)
    : mScenario(scenario),
      mFolder(folder),
      mReport(report),
      mPlugin((static_cast<void>(PrepareHost(scenario)), folder.Plugin())),
      mChecks(report),
      mPanel(folder.Program().parent_path()),
      mDriver(mPlugin),
      mMessaging(folder, report, mPanel) {
    WatchImports(mPlugin.Module());
    contract::WatchPluginCore(mPlugin.Module());
    // A scenario may send another message then, or show a dialog.
    contract::BeforeEachCall([](const char* entry) { Host().operations.Begin("PluginCore", entry); });
    DisguiseAs(folder.Program(), mPlugin.Module());
    InstallPluginClock(mPlugin.Module());
}

void ScenarioPlayer::PlaySteps() {
    for (std::size_t i = 0; i < mScenario.steps.size(); ++i) {
        const Step& step = mScenario.steps[i];
        RecordStep(step.place);
        mReport.BeginStep(i + 1, step);
        PlayAndGoOn(step);
        mReport.EndStep();
    }
}

void ScenarioPlayer::PlayAndGoOn(const Step& step) {
    try {
        Play(step);
    } catch (const HostLost&) {
        throw;
    } catch (const std::exception& error) {
        if (!mScenario.goesOnWhenNotReached) {
            throw;
        }
        Host().rules.Broken(Rule::kNotReached, step.place + ": " + error.what());
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
    try {
        PerformVerb(step);
    } catch (...) {
        mChecks.TellRest();
        mMessaging.TellRest();
        throw;
    }
    mChecks.Check(step);
    mMessaging.Check(step);
}

void ScenarioPlayer::PerformVerb(const Step& step) {
    Performance performance(step, mDriver, mPlugin, mPanel, mFolder, mReport,
                            [this](const Step& within) { Play(within); });
    if (step.verb->needsPlugin && !mPlugin.IsLoaded()) {
        performance.NotReached("the plug-in is not loaded any more");
        return;
    }
    // Beside messages: window hooks, the panel's listener.
    HostStateWatch state;
    step.verb->perform(step.action, performance);
    state.Check(step.place);
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
    mReport.NestedInto(nested.operation);
    PerformVerb(nested.step.front());
}

}  // namespace simhost
