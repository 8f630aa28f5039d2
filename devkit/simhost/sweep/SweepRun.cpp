#include "simhost/sweep/SweepRun.h"

#include <windows.h>

#include <memory>
#include <stdexcept>

#include "doubles/host/Host.h"
#include "simhost/checks/EndChecks.h"
#include "simhost/checks/ImportWatch.h"
#include "simhost/contract/ContractChecks.h"
#include "simhost/contract/PluginCoreWatch.h"
#include "simhost/plugin/AllReferences.h"
#include "simhost/run/FlightRecorder.h"
#include "simhost/run/ScenarioPlayer.h"
#include "simhost/sweep/HostFaults.h"
#include "simhost/sweep/ImportTable.h"
#include "simhost/sweep/Injector.h"
#include "simhost/sweep/UnhandledWatch.h"

namespace simhost::sweep {

namespace {

constexpr std::int32_t kRefused = 1;

class Run {
  public:
    Run(const Scenario& scenario, const RunFolder& folder)
        : mFolder(folder),
          mReport(scenario, Transcript("", Verbosity::kQuiet, false), {}),
          mPlayer(scenario, folder, mReport) {
        mReport.LeaveOutCalls();
        mPlayer.Driver().onAnswer = [this](const std::string& message, std::int32_t answer) {
            NoteAnswer(message, answer);
        };
    }

    SweepRun Play(const Scenario& scenario, std::optional<Fault> fault, bool records) {
        TheHoldings().Forget();
        TheInjector().Begin(mPlayer.Plugin().Module(), fault, records);
        SubstituteImports(mPlayer.Plugin().Module());
        WatchUnhandled(mPlayer.Plugin().Module());
        InjectHostFaults();
        try {
            mPlayer.PlaySteps();
            CheckLeftovers(scenario, fault.has_value());
            SendNext();
        } catch (const HostLost&) {
            mResult.isLost = true;
        } catch (const std::exception& error) {
            mResult.brokenOff = error.what();
            Host().rules.Broken(Rule::kNotReached, mResult.brokenOff);
        }
        TheInjector().End();
        mReport.EndStep();
        mResult.unhandled = TakeUnhandled();
        return std::move(mResult);
    }

  private:
    void NoteAnswer(const std::string& message, std::int32_t answer) {
        ++mResult.answers[answer];
        // A plug-in that is in use may well refuse to be unloaded.
        if (answer == kRefused && !message.starts_with("\"SP Access\"")) {
            mResult.refused.push_back(message);
        }
    }

    void CheckLeftovers(const Scenario& scenario, bool isFaulty) {
        if (!isFaulty) {
            if (scenario.endIsChecked) {
                CheckEnd(scenario.expect, mFolder);
            }
            return;
        }
        RecordStep("the checks after the last step");
        contract::ReportFindings("at the end");
        Host().ReportLeftovers();
        if (HooksInPlace() != 0) {
            Host().rules.Broken(Rule::kHookLeft, "message hooks left: " + std::to_string(HooksInPlace()),
                                HooksInPlace());
        }
    }

    // The host says good-bye once more: a plug-in that is still at a message refuses it.
    void SendNext() {
        mResult.violations = Host().rules.Violations();
        if (mPlayer.Plugin().IsLoaded()) {
            RecordStep("the message after the last step");
            mResult.isNextHandled = mPlayer.Driver().SendInterface(kSPInterfaceShutdownSelector) != kRefused;
        }
    }

    const RunFolder& mFolder;
    RunReport mReport;
    ScenarioPlayer mPlayer;
    SweepRun mResult;
};

}  // namespace

SweepRun PlayOnce(const Scenario& scenario, const RunFolder& folder, std::optional<Fault> fault, bool records) {
    RecordStep("loading the plug-in");
    SimulatedHost host;
    auto run = std::make_unique<Run>(scenario, folder);
    SweepRun result = run->Play(scenario, fault, records);
    if (result.violations.empty()) {
        result.violations = host.rules.Violations();
    }
    if (result.isLost) {
        return result;
    }
    RecordStep("unloading the plug-in");
    RemoveHooksLeft();
    FreeAllReferencesIn(folder.Root());
    contract::ForgetLibrary();
    result.leftByGiver = TheHoldings().Counts();
    result.left = TheHoldings().All();
    CloseHandlesLeft();
    return result;
}

}  // namespace simhost::sweep
