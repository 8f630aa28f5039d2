#include "simhost/contract/ContractRun.h"

#include <windows.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <utility>

#include "doubles/common/Text.h"
#include "simhost/contract/ContractDay.h"
#include "simhost/contract/ContractRecord.h"
#include "simhost/contract/Loss.h"
#include "simhost/contract/PluginCoreWatch.h"
#include "simhost/contract/Probes.h"
#include "simhost/launch/Cancellation.h"
#include "simhost/launch/CaseRun.h"
#include "simhost/launch/RunFolder.h"
#include "simhost/launch/TemporaryFolder.h"
#include "simhost/plugin/LibraryFile.h"

namespace simhost::contract {

namespace {

// Each costs a person's time.
constexpr int kHangsThatAreEnough = 1;
// A slow library takes its time at each of some hundred calls.
constexpr std::int64_t kDaySeconds = 300;

// What may destroy the memory of a process in which nothing is guarded, or stop it where nobody answers dialogs.
constexpr ClauseId kRiskyClauses[] = {ClauseId::kDialog,       ClauseId::kBufferBehind,   ClauseId::kBufferInFront,
                                      ClauseId::kNullBuffer,   ClauseId::kArgumentBehind, ClauseId::kArgumentWritten,
                                      ClauseId::kArgumentKept, ClauseId::kArgumentFreed,  ClauseId::kStateWritten};
constexpr ClauseId kLeftClauses[] = {ClauseId::kHookLeft, ClauseId::kWindowLeft, ClauseId::kThreadLeft,
                                     ClauseId::kProcessLeft, ClauseId::kSecondStart};

// How a process was lost, and what that says in a run for one promise: kCrash stands for what it is.
struct LossInRun {
    std::string run;
    ClauseId meaning;
    Finding finding;
};

// The answers of the kit's own double, which somebody may check like any library.
constexpr const wchar_t* kDoubleScript = L"QUORVEL_PLUGINCORE_SCRIPT";

std::optional<std::wstring> VariableOf(const wchar_t* name) {
    const wchar_t* const value = _wgetenv(name);
    return value == nullptr ? std::nullopt : std::optional<std::wstring>(value);
}

// That nothing was called at all says more than what follows from it.
std::string ReasonOf(const Verdict& verdict) {
    for (const Violation& violation : verdict.violations) {
        if (violation.rule == Rule::kUnrecorded) {
            return violation.text;
        }
    }
    return verdict.complaints.empty() ? "the host has not said why" : verdict.complaints.front();
}

bool HasBroken(const Verdict& verdict, Rule rule) {
    return std::any_of(verdict.violations.begin(), verdict.violations.end(),
                       [&](const Violation& violation) { return violation.rule == rule; });
}

class Check {
  public:
    Check(std::filesystem::path library, std::filesystem::path plugin, const ProbeLimits& limits)
        : mLibrary(std::move(library)), mPlugin(std::move(plugin)), mLimits(limits), mFolder(L"contract", true) {}

    ContractResult Run() {
        // The kit's own double would keep its calls in memory otherwise.
        SetEnvironmentVariableW(L"QUORVEL_PLUGINCORE_RECORD", L"NUL");
        const std::optional<std::wstring> script = VariableOf(kDoubleScript);
        RunDay();
        // The day has one of its own.
        SetEnvironmentVariableW(kDoubleScript, script ? script->c_str() : nullptr);
        for (const Probe& probe : AllProbes()) {
            RunOrSkip(probe);
        }
        for (const auto& [reason, probes] : mLeftOut) {
            mResult.notes.push_back("left out, because " + reason + ": the probes " + probes);
        }
        AddLosses();
        return std::move(mResult);
    }

  private:
    std::filesystem::path NewRecord(const std::string& run) const { return mFolder.At(Wide(run) + L".jsonl"); }

    // Null when the probe is to be run.
    const char* ReasonToSkip(const Probe& probe) const {
        if (mHangs >= kHangsThatAreEnough) {
            return "the library hangs";
        }
        const bool isRisky = !mLosses.empty() || HasSeen(kRiskyClauses);
        const bool leavesThings = HasSeen(kLeftClauses);
        if ((probe.needs != Needs::kNothing && isRisky) || (probe.needs == Needs::kNothingLeft && leavesThings)) {
            return "something else is to be mended first";
        }
        return nullptr;
    }

    bool HasSeen(std::span<const ClauseId> clauses) const {
        return std::any_of(clauses.begin(), clauses.end(), [&](ClauseId clause) { return mResult.IsBroken(clause); });
    }

    void RunOrSkip(const Probe& probe) {
        if (const char* const reason = ReasonToSkip(probe)) {
            mLeftOut[reason] += (mLeftOut[reason].empty() ? "" : ", ") + std::string(probe.name);
        } else {
            RunOne(probe);
        }
    }

    void RunOne(const Probe& probe) {
        const ProbeOutcome outcome = RunInProcess(probe, mLibrary, NewRecord(probe.name), mLimits);
        if (!outcome.seen.refusal.empty()) {
            throw std::runtime_error(Utf8(mLibrary.wstring()) + ": " + outcome.seen.refusal);
        }
        Take(probe.name, outcome.seen);
        if (outcome.loss && outcome.loss->finding) {
            Lost(probe.name, probe.lossMeans, *outcome.loss->finding);
        } else if (outcome.loss) {
            Unfinished(std::string("the probe \"") + probe.name +
                       "\" was lost, which is not the library's doing: " + outcome.loss->why);
        }
        for (const std::string& note : outcome.notes) {
            mResult.notes.push_back(std::string("the probe \"") + probe.name + "\": " + note);
        }
    }

    void RunDay() {
        const std::filesystem::path scenario = mFolder.At(L"day.json");
        std::ofstream(scenario, std::ios::binary | std::ios::trunc) << kContractDay;
        const std::filesystem::path record = NewRecord(kDay);
        SetEnvironmentVariableW(kContractRecordVariable, record.c_str());
        RunOptions options;
        options.plugin = mPlugin;
        options.pluginCore = mLibrary;
        options.workFolder = mFolder.At(L"day");
        // The limits count from the last begin or end of a call: see KeepBookIfAsked.
        options.stepTimeLimitSeconds = mLimits.callSeconds;
        options.timeLimitSeconds = kDaySeconds + mLimits.callSeconds;
        options.tell.verbosity = Verbosity::kQuiet;
        const ScenarioFile file(scenario);
        const Verdict verdict = RunCase(file, "", options);
        const ContractRecord seen = ReadContractRecord(record);
        Take(kDay, seen);
        // Another plug-in may do without the library, or not find it.
        if (seen.isDone && !HasBroken(verdict, Rule::kUnrecorded)) {
            return;
        }
        const Suspects suspects{kPluginCoreName, Utf8(PluginFileOf(file, "", options).filename().wstring())};
        const std::optional<Loss> loss = LossOf(verdict.violations, seen.underWay, suspects);
        if (loss && loss->finding) {
            Lost(kDay, ClauseId::kCrash, *loss->finding);
        } else if (HasBroken(verdict, Rule::kTimeLimit)) {
            Unfinished("the day through the plug-in was not finished: " + ReasonOf(verdict));
        } else {
            Unfinished("the day through the plug-in was not played, which is not the library's doing: " +
                       (loss ? loss->why : ReasonOf(verdict)));
        }
    }

    void Unfinished(const std::string& why) {
        mResult.isWhole = false;
        mResult.notes.push_back(why);
    }

    void Take(const std::string& run, const ContractRecord& record) {
        mResult.tried.insert(record.tried.begin(), record.tried.end());
        for (const Finding& finding : record.findings) {
            mResult.sightings.push_back({run, finding});
        }
    }

    void Lost(const std::string& run, ClauseId meaning, Finding finding) {
        mHangs += finding.clause == ClauseId::kHang ? 1 : 0;
        mLosses.push_back({run, meaning, std::move(finding)});
    }

    // The promise that a run is for is broken by its loss, unless the same entry is lost in other runs as well.
    ClauseId ClauseOfLoss(const LossInRun& loss) const {
        const bool isElsewhere = std::any_of(mLosses.begin(), mLosses.end(), [&](const LossInRun& other) {
            return other.run != loss.run && other.finding.entry == loss.finding.entry;
        });
        return loss.meaning == ClauseId::kCrash || isElsewhere ? loss.finding.clause : loss.meaning;
    }

    void AddLosses() {
        // Every run tries these without saying so.
        for (const ClauseId clause : {ClauseId::kCrash, ClauseId::kHang, ClauseId::kEnded, ClauseId::kDialog}) {
            mResult.tried.insert(clause);
        }
        for (const LossInRun& loss : mLosses) {
            Finding finding = loss.finding;
            finding.clause = ClauseOfLoss(loss);
            mResult.sightings.push_back({loss.run, std::move(finding)});
        }
    }

    std::filesystem::path mLibrary;
    std::filesystem::path mPlugin;
    ProbeLimits mLimits;
    TemporaryFolder mFolder;
    ContractResult mResult;
    std::vector<LossInRun> mLosses;
    std::map<std::string, std::string> mLeftOut;  // by the reason, the names of the probes
    int mHangs = 0;
};

}  // namespace

bool ContractResult::IsBroken(ClauseId clause) const {
    return std::any_of(sightings.begin(), sightings.end(),
                       [&](const Sighting& sighting) { return sighting.finding.clause == clause; });
}

ContractResult CheckContract(const std::filesystem::path& library, const std::filesystem::path& plugin,
                             const ProbeLimits& limits) {
    const std::filesystem::path file = std::filesystem::absolute(library).make_preferred();
    if (!std::filesystem::is_regular_file(file)) {
        throw std::runtime_error("there is no file " + Utf8(file.wstring()));
    }
    if (const std::string why = WhyNoLibrary(file); !why.empty()) {
        throw std::runtime_error(Utf8(file.wstring()) + " " + why);
    }
    ListenForCancellation();
    return Check(file, plugin, limits).Run();
}

}  // namespace simhost::contract
