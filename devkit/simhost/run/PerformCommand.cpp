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

void Play(const Scenario& scenario, const RunFolder& folder, Transcript& transcript, const PerformOptions& options) {
    InstallCrashGuard([&](const std::string& what) {
        Host().rules.Broken(Rule::kCrash, (sPlayer == nullptr ? "" : sPlayer->WhereItIs() + ": ") + what);
        Conclude(scenario, options);
    });
    try {
        sPlayer = new ScenarioPlayer(scenario, folder, transcript);
    } catch (const std::exception& error) {
        Host().rules.Broken(Rule::kPropertyList, error.what());
        return;
    }
    sPlayer->PlaySteps();
    CheckEnd(scenario.expect, folder);
}

}  // namespace

int Perform(const PerformOptions& options) {
    // Never destroyed: the plug-in may call the host until the process ends.
    [[maybe_unused]] const auto* const host = new SimulatedHost;
    const RunFolder folder(options.workFolder, options.pluginName);
    const auto* const scenario =
        new Scenario(ScenarioFile(options.scenario).Read(options.caseName, folder.PlaceholdersForScenarios()));
    auto* const transcript = new Transcript(folder.PlaceholdersForScenarios().at("work"), options.quiet);
    transcript->Title(scenario->title);
    try {
        Play(*scenario, folder, *transcript, options);
    } catch (const HostLost&) {
        // Noted already.
    } catch (const std::exception& error) {
        Host().rules.Broken(Rule::kNotReached, error.what());
    }
    return Conclude(*scenario, options);
}

}  // namespace simhost
