#include "simhost/contract/ContractRun.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <optional>
#include <stdexcept>
#include <utility>

#include "doubles/common/Text.h"
#include "simhost/contract/ContractDay.h"
#include "simhost/contract/ContractRecord.h"
#include "simhost/contract/DayLoss.h"
#include "simhost/contract/PluginCoreWatch.h"
#include "simhost/contract/Probes.h"
#include "simhost/launch/Cancellation.h"
#include "simhost/launch/CaseRun.h"
#include "simhost/launch/ChildProcess.h"
#include "simhost/launch/Job.h"
#include "simhost/launch/TemporaryFolder.h"
#include "simhost/plugin/LibraryFile.h"

namespace simhost::contract {

namespace {

constexpr std::int64_t kProbeMilliseconds = 10'000;
// Each costs a person's time.
constexpr int kHangsThatAreEnough = 1;
constexpr const char* kDay = "day";

// How a process was lost, and what that says in a run for one promise: kCrash stands for what it is.
struct Loss {
    std::string run;
    ClauseId meaning;
    Finding finding;
};

bool IsLoss(ClauseId clause) {
    return clause == ClauseId::kCrash || clause == ClauseId::kEnded || clause == ClauseId::kHang;
}

std::string ExitCodeInWords(DWORD code) {
    char text[16];
    // Codes of Windows are readable in hexadecimal only.
    std::snprintf(text, sizeof text, code <= 255 ? "%lu" : "0x%08lX", code);
    return text;
}

class Check {
  public:
    Check(std::filesystem::path library, std::filesystem::path plugin)
        : mLibrary(std::move(library)), mPlugin(std::move(plugin)), mFolder(L"contract") {}

    ContractResult Run() {
        // The kit's own double would keep its calls in memory otherwise.
        SetEnvironmentVariableW(L"QUORVEL_PLUGINCORE_RECORD", L"NUL");
        RunDay();
        for (const Probe& probe : AllProbes()) {
            if (const char* const reason = ReasonToSkip(probe)) {
                mResult.notes.push_back(std::string("the probe \"") + probe.name + "\" was left out: " + reason);
            } else {
                RunOne(probe);
            }
        }
        AddLosses();
        return std::move(mResult);
    }

  private:
    std::filesystem::path NewRecord(const std::string& run) const {
        std::filesystem::path record = mFolder.At(Wide(run) + L".jsonl");
        SetEnvironmentVariableW(kContractRecordVariable, record.c_str());
        return record;
    }

    // Null when the probe is to be run.
    const char* ReasonToSkip(const Probe& probe) const {
        if (mHangs >= kHangsThatAreEnough) {
            return "the library hangs";
        }
        const bool isBroken = !mResult.sightings.empty() || !mLosses.empty();
        return probe.needsSoundLibrary && isBroken ? "something else is to be mended first" : nullptr;
    }

    void RunOne(const Probe& probe) {
        const std::filesystem::path record = NewRecord(probe.name);
        const std::filesystem::path program = KitFolder() / L"simhost.exe";
        std::optional<DWORD> exitCode;
        {
            const Job job;
            const ChildProcess child(program, {L"probe", Wide(probe.name), mLibrary.wstring()}, job);
            exitCode = child.WaitFor(kProbeMilliseconds);
        }
        const ContractRecord seen = ReadContractRecord(record);
        if (!seen.refusal.empty()) {
            throw std::runtime_error(Utf8(mLibrary.wstring()) + ": " + seen.refusal);
        }
        const bool isNoted = Take(probe.name, probe.lossMeans, seen);
        const EntryCall call = seen.underWay.value_or(EntryCall{});
        if (!exitCode) {
            Lost(probe.name, probe.lossMeans,
                 {ClauseId::kHang, call.entry, call.call,
                  "did not return within " + std::to_string(kProbeMilliseconds / 1000) + " seconds"});
        } else if (!seen.isDone && !isNoted) {
            Lost(probe.name, probe.lossMeans,
                 {ClauseId::kEnded, call.entry, call.call,
                  "ended the process, with the exit code " + ExitCodeInWords(*exitCode)});
        }
    }

    void RunDay() {
        const std::filesystem::path scenario = mFolder.At(L"day.json");
        std::ofstream(scenario, std::ios::binary | std::ios::trunc) << kContractDay;
        const std::filesystem::path record = NewRecord(kDay);
        RunOptions options;
        options.plugin = mPlugin;
        options.pluginCore = mLibrary;
        options.workFolder = mFolder.At(L"day");
        options.tell.verbosity = Verbosity::kQuiet;
        const ScenarioFile file(scenario);
        const Verdict verdict = RunCase(file, "", options);
        const ContractRecord seen = ReadContractRecord(record);
        const bool isTold = Take(kDay, ClauseId::kCrash, seen);
        if (isTold || (seen.isDone && WasRecorded(verdict))) {
            return;
        }
        DayLoss loss = LossOf(verdict, seen.underWay, Utf8(PluginFileOf(file, "", options).filename().wstring()));
        if (loss.finding) {
            Lost(kDay, ClauseId::kCrash, std::move(*loss.finding));
        } else {
            mResult.isWhole = false;
            mResult.notes.push_back("the day through the plug-in was not played, which is not the library's doing: " +
                                    loss.why);
        }
    }

    // Another plug-in may do without the library, or not find it.
    static bool WasRecorded(const Verdict& verdict) {
        return std::none_of(verdict.violations.begin(), verdict.violations.end(),
                            [](const Violation& violation) { return violation.rule == Rule::kUnrecorded; });
    }

    // Whether the loss of the process is among what was seen.
    bool Take(const std::string& run, ClauseId lossMeans, const ContractRecord& record) {
        bool isLost = false;
        mResult.tried.insert(record.tried.begin(), record.tried.end());
        for (const Finding& finding : record.findings) {
            if (IsLoss(finding.clause)) {
                Lost(run, lossMeans, finding);
                isLost = true;
            } else {
                mResult.sightings.push_back({run, finding});
            }
        }
        return isLost;
    }

    void Lost(const std::string& run, ClauseId meaning, Finding finding) {
        mHangs += finding.clause == ClauseId::kHang ? 1 : 0;
        mLosses.push_back({run, meaning, std::move(finding)});
    }

    // The promise that a run is for is broken by its loss, unless the same entry is lost in other runs as well.
    ClauseId ClauseOfLoss(const Loss& loss) const {
        const bool isElsewhere = std::any_of(mLosses.begin(), mLosses.end(), [&](const Loss& other) {
            return other.run != loss.run && other.finding.entry == loss.finding.entry;
        });
        return loss.meaning == ClauseId::kCrash || isElsewhere ? loss.finding.clause : loss.meaning;
    }

    void AddLosses() {
        // Every run tries these without saying so.
        for (const ClauseId clause : {ClauseId::kCrash, ClauseId::kHang, ClauseId::kEnded, ClauseId::kDialog}) {
            mResult.tried.insert(clause);
        }
        for (const Loss& loss : mLosses) {
            Finding finding = loss.finding;
            finding.clause = ClauseOfLoss(loss);
            mResult.sightings.push_back({loss.run, std::move(finding)});
        }
    }

    std::filesystem::path mLibrary;
    std::filesystem::path mPlugin;
    TemporaryFolder mFolder;
    ContractResult mResult;
    std::vector<Loss> mLosses;
    int mHangs = 0;
};

}  // namespace

bool ContractResult::IsBroken(ClauseId clause) const {
    return std::any_of(sightings.begin(), sightings.end(),
                       [&](const Sighting& sighting) { return sighting.finding.clause == clause; });
}

ContractResult CheckContract(const std::filesystem::path& library, const std::filesystem::path& plugin) {
    const std::filesystem::path file = std::filesystem::absolute(library).make_preferred();
    if (!std::filesystem::is_regular_file(file)) {
        throw std::runtime_error("there is no file " + Utf8(file.wstring()));
    }
    if (const std::string why = WhyNoLibrary(file); !why.empty()) {
        throw std::runtime_error(Utf8(file.wstring()) + " " + why);
    }
    ListenForCancellation();
    return Check(file, plugin).Run();
}

}  // namespace simhost::contract
