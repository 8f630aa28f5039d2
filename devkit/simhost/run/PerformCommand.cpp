#include "simhost/run/PerformCommand.h"

#include <exception>
#include <string>

#include "doubles/host/Host.h"
#include "simhost/checks/EndChecks.h"
#include "simhost/report/ResultRecord.h"
#include "simhost/run/CrashGuard.h"
#include "simhost/run/ScenarioPlayer.h"
#include "simhost/scenario/ScenarioFile.h"

namespace simhost {

namespace {

// Set once the plug-in is loaded and kept for good: a crash may be reported as late as the process ends.
ScenarioPlayer* sPlayer = nullptr;

int Conclude(const Scenario& scenario, const PerformOptions& options) {
    const Verdict verdict = Judge(Host().rules, scenario.expect);
    WriteResult(options.record, scenario.title, verdict);
    return verdict.passed ? 0 : 1;
}

void Play(const Scenario& scenario, const RunFolder& folder, RunReport& report, const PerformOptions& options) {
    InstallCrashGuard([&](const std::string& what) {
        Host().rules.Broken(Rule::kCrash, (sPlayer == nullptr ? "" : sPlayer->WhereItIs() + ": ") + what);
        Conclude(scenario, options);
    });
    try {
        sPlayer = new ScenarioPlayer(scenario, folder, report);
    } catch (const std::exception& error) {
        Host().rules.Broken(Rule::kPropertyList, error.what());
        return;
    }
    sPlayer->PlaySteps();
    if (scenario.endIsChecked) {
        report.BeginEnd();
        CheckEnd(scenario.expect, folder);
    }
}

}  // namespace

int Perform(const PerformOptions& options) {
    // Never destroyed: the plug-in may call the host until the process ends.
    [[maybe_unused]] const auto* const host = new SimulatedHost;
    const RunFolder folder(options.workFolder, options.pluginName);
    const ScenarioFile file(options.scenario);
    auto* const scenario = new Scenario(file.Read(options.caseName, folder.PlaceholdersForScenarios()));
    Vary(*scenario, options.variation);
    const Transcript transcript(folder.PlaceholdersForScenarios().at("work"), options.tell.verbosity,
                                UsesColour(options.tell.colour));
    auto* const report = new RunReport(*scenario, transcript, options.tell.events);
    report->BeginRun(file.PlaceOf(options.caseName));
    try {
        Play(*scenario, folder, *report, options);
    } catch (const HostLost&) {
        // Noted already.
    } catch (const std::exception& error) {
        Host().rules.Broken(Rule::kNotReached, error.what());
    }
    report->EndStep();
    return Conclude(*scenario, options);
}

}  // namespace simhost
