#include "simhost/sweep/Worker.h"

#include <windows.h>

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>

#include "simhost/report/ResultRecord.h"
#include "simhost/run/FlightRecorder.h"
#include "simhost/scenario/ScenarioFile.h"
#include "simhost/sweep/CallWays.h"
#include "simhost/sweep/FaultVerdict.h"
#include "simhost/sweep/FolderReset.h"
#include "simhost/sweep/Injector.h"
#include "simhost/sweep/Instance.h"
#include "simhost/sweep/InstanceVerdict.h"
#include "simhost/sweep/Plan.h"
#include "simhost/sweep/SweepRun.h"
#include "simhost/sweep/WorkerResults.h"

namespace simhost::sweep {

namespace {

using Json = nlohmann::ordered_json;

std::set<std::string> LinesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::set<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.insert(line);
    }
    return lines;
}

// They have failures of their own, and are too many to be played for each fault.
Scenario WithoutRandomMessages(Scenario scenario) {
    std::erase_if(scenario.steps,
                  [](const Step& step) { return std::holds_alternative<SendRandomMessages>(step.action); });
    return scenario;
}

class Worker {
  public:
    explicit Worker(const WorkerOptions& options)
        : mOptions(options),
          mFolder(options.workFolder, options.pluginName),
          mFile(options.scenario),
          mResults(options.results) {}

    int Work() {
        const Scenario scenario =
            WithoutRandomMessages(mFile.Read(mOptions.caseName, mFolder.PlaceholdersForScenarios()));
        mReset.emplace(scenario, mFolder, mOptions.kit);
        Scenario faulty = scenario;
        // What a fault has prevented cannot be played on.
        faulty.goesOnWhenNotReached = true;
        // The first run in a process does what is done once, and is none to compare with.
        const std::optional<SweepRun> second = PlayTwice(scenario);
        if (!second || !Replay(scenario, kUnplayable, true)) {
            return 0;
        }
        PlayTwiceOnceMore(scenario, *second);
        const std::vector<PlannedFault> plan = MakePlan();
        // Recorded calls took memory and time, but the plug-in's own doing is the same.
        std::size_t unreplayed = mOptions.first;
        const std::size_t end = std::min(plan.size(), mOptions.last);
        for (std::size_t i = mOptions.first; i < end; ++i) {
            if (!PlayFault(faulty, i, plan[i])) {
                return 0;
            }
            if (i + 1 - unreplayed < mOptions.replayEvery && i + 1 != end) {
                continue;
            }
            mResults.Replaying(unreplayed);
            if (!Replay(scenario, kReplayFailed, false)) {
                return 0;
            }
            unreplayed = i + 1;
            mResults.Replayed(unreplayed);
        }
        mResults.Done();
        return 0;
    }

  private:
    SweepRun Play(Instance& instance, const Scenario& scenario, std::optional<Fault> fault = std::nullopt,
                  bool records = false) {
        mReset->Reset();
        return instance.Play(scenario, fault, records);
    }

    // In one instance; the second run, or nothing when the first does not come out as it should.
    std::optional<SweepRun> PlayTwice(const Scenario& scenario) {
        Instance instance(mFolder, Stays::kToTheEnd);
        SweepRun first = Play(instance, scenario);
        SweepRun second;
        try {
            second = first.isLost ? SweepRun() : Play(instance, scenario);
        } catch (const std::exception& error) {
            mWhyNotTwice = error.what();
        }
        if (second.isLost) {
            mResults.Failed(kUnplayable, {"an exception left the plug-in in its second run"});
            return std::nullopt;
        }
        if (!first.isLost) {
            instance.End(first);
        }
        return IsAsExpected(first, scenario, kUnplayable) ? second : std::optional<SweepRun>();
    }

    // What the next run in an instance is to be compared with after a fault. It must be the same each time.
    void PlayTwiceOnceMore(const Scenario& scenario, const SweepRun& second) {
        if (mWhyNotTwice.empty()) {
            Instance instance(mFolder, Stays::kToTheEnd);
            TwoRuns runs;
            runs.first = Play(instance, scenario, std::nullopt, IsDescribed());
            runs.second = Play(instance, scenario, std::nullopt, IsDescribed());
            instance.End(runs.first);
            for (const Difference& difference : DifferencesBetween(runs.second, second)) {
                mWhyNotTwice += (mWhyNotTwice.empty() ? "" : "; ") + difference.text;
            }
            if (mWhyNotTwice.empty()) {
                mTwice = std::move(runs);
            }
        }
        mResults.Instance(mWhyNotTwice);
    }

    // False when the scenario does not come out as it should.
    bool Replay(const Scenario& scenario, const char* otherwise, bool isRecorded) {
        Instance instance(mFolder, Stays::kAsTheStorySays);
        SweepRun run = Play(instance, scenario, std::nullopt, isRecorded);
        if (!run.isLost) {
            instance.End(run);
        }
        const bool isAsExpected = IsAsExpected(run, scenario, otherwise);
        if (isRecorded) {
            mFaultless = std::move(run);
            mRecorded = TheInjector();
        }
        return isAsExpected;
    }

    // Tells it when not.
    bool IsAsExpected(const SweepRun& run, const Scenario& scenario, const char* otherwise) {
        RuleBook book;
        for (const Violation& violation : run.violations) {
            book.Broken(violation);
        }
        Verdict verdict = Judge(book, scenario.expect);
        if (run.isLost) {
            verdict.complaints.emplace_back("an exception left the plug-in");
        }
        if (mFaultless && run.leftByGiver != mFaultless->leftByGiver) {
            verdict.complaints.emplace_back(
                "other things are left than before the fault: " + Json(run.leftByGiver).dump() + ", before " +
                Json(mFaultless->leftByGiver).dump());
        }
        if (!verdict.complaints.empty()) {
            mResults.Failed(otherwise, verdict.complaints);
        }
        return verdict.complaints.empty();
    }

    // Tells what is left out of it on the way.
    std::vector<PlannedFault> MakePlan() {
        std::vector<PlannedFault> plan = AllFaults(mRecorded, mOptions.kinds, mOptions.modes);
        if (mOptions.number) {
            std::erase_if(plan, [&](const PlannedFault& planned) { return planned.fault.number != *mOptions.number; });
        }
        PlanAmounts amounts;
        amounts.offered = AmountsOf(plan);
        if (!mOptions.known.empty()) {
            KeepDistinct(plan, LinesOf(mOptions.known));
        }
        amounts.distinct = AmountsOf(plan);
        KeepEvery(plan, mOptions.every);
        amounts.planned = AmountsOf(plan);
        for (const Kind kind : mOptions.kinds) {
            amounts.counted[kind] = mRecorded.Count(kind);
        }
        mResults.Planned(amounts);
        return plan;
    }

    // False when the process can play no more.
    bool PlayFault(const Scenario& scenario, std::size_t index, const PlannedFault& planned) {
        mResults.Begin(index, planned);
        Played played;
        PlayAndGoOn(played, scenario, index, planned.fault, Stays::kAsTheStorySays);
        // Real hosts keep the plug-in, whether or not it holds itself.
        if (mTwice && !played.run.isLost && !played.again && !played.hasFileOpen) {
            Played kept;
            PlayAndGoOn(kept, scenario, index, planned.fault, Stays::kToTheEnd);
            Add(played.verdict, std::move(kept.verdict));
            played.again = std::move(kept.again);
        }
        TellEnd(index, planned, played);
        return !played.run.isLost && !(played.again && played.again->isLost);
    }

    struct Played {
        SweepRun run;
        std::vector<CountedCall> calls;  // of the fault's kind, when it is described
        std::optional<SweepRun> again;   // the run without a fault that followed in the instance
        bool hasFileOpen = false;        // so that none could follow
        FaultVerdict verdict;
    };

    // The run without a fault follows when the plug-in is still there.
    void PlayAndGoOn(Played& played, const Scenario& scenario, std::size_t index, const Fault& fault, Stays stays) {
        Instance instance(mFolder, stays);
        // One fault alone is looked at closely: that takes its time.
        played.run = Play(instance, scenario, fault, IsDescribed());
        played.calls = TheInjector().Calls(fault.kind);
        FaultVerdict ofNext;
        if (!played.run.isLost && mTwice && instance.IsLoaded() && IsFolderReset(played)) {
            mResults.Again(index);
            played.again = instance.Play(scenario, std::nullopt, IsDescribed());
            ofNext = JudgeNextInInstance(*played.again, *mTwice, played.run);
        }
        if (!played.run.isLost && !(played.again && played.again->isLost)) {
            instance.End(played.run);
        }
        Add(played.verdict, JudgeFault(played.run, FaultlessOf(played), played.run.failures));
        Add(played.verdict, std::move(ofNext));
    }

    // Not when the plug-in has left a file open that the scenario writes anew.
    bool IsFolderReset(Played& played) {
        try {
            mReset->Reset();
        } catch (const std::exception&) {
            played.hasFileOpen = true;
            ++played.verdict.explained["no run followed in the instance, as a file was left open"];
        }
        return !played.hasFileOpen;
    }

    bool IsDescribed() const { return mOptions.number.has_value(); }

    SweepRun FaultlessOf(const Played& played) const {
        return played.again ? ExpectedBefore(*mTwice, played.run) : *mFaultless;
    }

    static void Add(FaultVerdict& verdict, FaultVerdict more) {
        for (std::string& finding : more.findings) {
            if (std::find(verdict.findings.begin(), verdict.findings.end(), finding) == verdict.findings.end()) {
                verdict.findings.push_back(std::move(finding));
            }
        }
        for (const auto& [what, amount] : more.explained) {
            verdict.explained[what] += amount;
        }
    }

    void TellEnd(std::size_t index, const PlannedFault& planned, const Played& played) {
        FaultEnd end{played.run, played.again.has_value(), played.verdict};
        if (IsDescribed()) {
            end.call = WayToCall(mFolder.Plugin(), played.calls, planned.fault.number);
            end.left = WaysToWhatIsLeft(mFolder.Plugin(), played.run.left,
                                        played.again ? mTwice->first.left : mFaultless->left);
        }
        mResults.End(index, end);
    }

    const WorkerOptions& mOptions;
    RunFolder mFolder;
    ScenarioFile mFile;
    WorkerResults mResults;
    Injector mRecorded;
    std::optional<FolderReset> mReset;
    std::optional<SweepRun> mFaultless;
    std::optional<TwoRuns> mTwice;  // unless it cannot be played so; with what both leave in the first
    std::string mWhyNotTwice;
};

}  // namespace

int Work(const WorkerOptions& options) {
    RecordStep("reading the scenario");
    const int code = Worker(options).Work();
    RecordConclusion();
    RecordStep("the end of the host's process");
    return code;
}

}  // namespace simhost::sweep
