#include "simhost/sweep/Instance.h"

#include <windows.h>

#include <memory>
#include <stdexcept>

#include "doubles/common/ImportPatch.h"
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

}  // namespace

class StoryRun {
  public:
    StoryRun(const Scenario& scenario, const RunFolder& folder)
        : mFolder(folder),
          mReport(scenario, Transcript("", Verbosity::kQuiet, false), {}),
          mPlayer(scenario, folder, mReport),
          mModule(mPlayer.Plugin().Module()) {
        mReport.LeaveOutCalls();
        mPlayer.Driver().onAnswer = [this](const std::string& message, std::int32_t answer) {
            NoteAnswer(message, answer);
        };
    }

    // Also once a step has freed it.
    HMODULE Module() const { return mModule; }

    SweepRun Play(const Scenario& scenario, std::optional<Fault> fault, bool records) {
        TheInjector().Begin(mModule, fault, records);
        SubstituteImports(mModule);
        WatchUnhandled(mModule);
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
        mResult.violations = Host().rules.Violations();
        mResult.operations = Host().operations.Totals();
        // The panels of the runs before hear it as well.
        mResult.operations.erase("Panel/OnEvent");
        mResult.failures = TheInjector().Failures();
        return std::move(mResult);
    }

  private:
    void NoteAnswer(const std::string& message, std::int32_t answer) {
        ++mResult.answers[answer];
        mResult.messages.push_back(message + " answered with " + std::to_string(answer));
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

    // Nothing fails any more: what is wrong from here on is what a fault has left in the plug-in.
    void SendNext() {
        TheInjector().End();
        if (mPlayer.Plugin().IsLoaded()) {
            RecordStep("the messages after the last step");
            mResult.aboutAnswer = mPlayer.Driver().SendInterface(kSPInterfaceAboutSelector);
            mResult.shutdownAnswer = mPlayer.Driver().SendInterface(kSPInterfaceShutdownSelector);
        }
    }

    const RunFolder& mFolder;
    RunReport mReport;
    ScenarioPlayer mPlayer;
    HMODULE mModule;
    SweepRun mResult;
};

Instance::Instance(const RunFolder& folder, Stays stays) : mFolder(folder), mStays(stays) {}

Instance::~Instance() = default;

SweepRun Instance::Play(const Scenario& scenario, std::optional<Fault> fault, bool records) {
    RecordStep("loading the plug-in");
    const bool isFirst = mRuns.empty();
    if (isFirst) {
        TheHoldings().Forget();
    } else {
        mHost.Renew();
        contract::ForgetRun();
        RestoreImports(mRuns.front()->Module());
    }
    mRuns.push_back(std::make_unique<StoryRun>(scenario, mFolder));
    if (isFirst && mStays == Stays::kToTheEnd) {
        // Never given back but by End().
        LoadLibraryW(mFolder.Plugin().c_str());
    }
    return mRuns.back()->Play(scenario, fault, records);
}

bool Instance::IsLoaded() const { return GetModuleHandleW(mFolder.Plugin().c_str()) != nullptr; }

void Instance::End(SweepRun& run) {
    RecordStep("unloading the plug-in");
    RemoveHooksLeft();
    FreeAllReferencesIn(mFolder.Root());
    contract::ForgetLibrary();
    run.leftByGiver = TheHoldings().Counts();
    run.left = TheHoldings().All();
    CloseHandlesLeft();
}

}  // namespace simhost::sweep
