#include "simhost/run/PerformCommand.h"

#include <windows.h>

#include <exception>
#include <string>

#include "doubles/host/Host.h"
#include "simhost/checks/EndChecks.h"
#include "simhost/contract/RecordedCalls.h"
#include "simhost/plugin/PluginModule.h"
#include "simhost/plugin/PropertyList.h"
#include "simhost/report/ResultRecord.h"
#include "simhost/run/FlightRecorder.h"
#include "simhost/run/ScenarioPlayer.h"
#include "simhost/scenario/ScenarioFile.h"

namespace simhost {

namespace {

int Conclude(const Scenario& scenario, const PerformOptions& options) {
    const Verdict verdict = Judge(Host().rules, scenario.expect);
    WriteResult(options.record, scenario.title, verdict);
    RecordConclusion();
    RecordStep("the end of the host's process");
    return verdict.passed ? 0 : 1;
}

// So much is left when the stack overflows that the exception can be raised.
void KeepStackForHandlers() {
    ULONG bytes = 64 * 1024;
    SetThreadStackGuarantee(&bytes);
}

void Play(const Scenario& scenario, const RunFolder& folder, RunReport& report) {
    RecordStep("loading the plug-in");
    // Kept for good: what was loaded may call the host as late as the process ends.
    ScenarioPlayer* player = nullptr;
    try {
        player = new ScenarioPlayer(scenario, folder, report);
    } catch (const PropertyListError& error) {
        Host().rules.Broken(Rule::kPropertyList, error.what());
        return;
    } catch (const LoadError& error) {
        Host().rules.Broken(Rule::kPluginLoad, error.what());
        return;
    }
    contract::Journal().KeepIn(folder.Calls());
    player->PlaySteps();
    if (scenario.endIsChecked) {
        RecordStep("the checks after the last step");
        report.BeginEnd();
        CheckEnd(scenario.expect, folder);
    }
}

}  // namespace

int Perform(const PerformOptions& options) {
    RecordStep("reading the scenario");
    // Never destroyed: the plug-in may call the host until the process ends.
    auto* const host = new SimulatedHost;
    const RunFolder folder(options.workFolder, options.pluginName);
    host->rules.onBroken = [file = folder.Violations()](const Violation& violation) { NoteViolation(file, violation); };
    KeepStackForHandlers();
    const ScenarioFile file(options.scenario);
    auto* const scenario = new Scenario(file.Read(options.caseName, folder.PlaceholdersForScenarios()));
    Vary(*scenario, options.variation);
    const Transcript transcript(folder.PlaceholdersForScenarios().at("work"), options.tell.verbosity,
                                UsesColour(options.tell.colour));
    auto* const report = new RunReport(*scenario, transcript, options.tell.events);
    report->BeginRun(file.PlaceOf(options.caseName));
    try {
        Play(*scenario, folder, *report);
    } catch (const HostLost&) {
        // Noted already.
    } catch (const std::exception& error) {
        Host().rules.Broken(Rule::kNotReached, error.what());
    }
    CheckOwnLibraryWasPlayed();
    report->EndStep();
    return Conclude(*scenario, options);
}

}  // namespace simhost
