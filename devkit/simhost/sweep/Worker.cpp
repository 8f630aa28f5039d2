#include "simhost/sweep/Worker.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>

#include "simhost/report/LineFile.h"
#include "simhost/report/ResultRecord.h"
#include "simhost/run/FlightRecorder.h"
#include "simhost/scenario/ScenarioFile.h"
#include "simhost/sweep/FaultVerdict.h"
#include "simhost/sweep/FolderReset.h"
#include "simhost/sweep/Injector.h"
#include "simhost/sweep/Plan.h"
#include "simhost/sweep/SweepRun.h"
#include "simhost/watch/Symbols.h"

namespace simhost::sweep {

namespace {

using Json = nlohmann::ordered_json;

constexpr std::size_t kMostDescribed = 5;
// For symbols: the plug-in may be loaded elsewhere, or not at all.
constexpr std::uint64_t kAnyBase = 0x400000000;

std::set<std::string> LinesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::set<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.insert(line);
    }
    return lines;
}

Json AsJson(const PlannedFault& planned) {
    return {{"kind", NameOf(planned.fault.kind)},
            {"mode", NameOf(planned.fault.mode)},
            {"number", planned.fault.number},
            {"operation", planned.operation},
            {"key", planned.key}};
}

// They have failures of their own, and are too many to be played for each fault.
Scenario WithoutRandomMessages(Scenario scenario) {
    std::erase_if(scenario.steps,
                  [](const Step& step) { return std::holds_alternative<SendRandomMessages>(step.action); });
    return scenario;
}

// For addr2line, where this process finds no names.
std::string OffsetInWords(std::uint64_t offset) {
    char text[48];
    std::snprintf(text, sizeof text, "the plug-in+0x%llx", static_cast<unsigned long long>(offset));
    return text;
}

// Of each kind and mode: [[kind, mode, amount], ...].
Json AmountsOf(const std::vector<PlannedFault>& plan) {
    std::map<std::pair<Kind, Mode>, std::size_t> amounts;
    for (const PlannedFault& planned : plan) {
        ++amounts[{planned.fault.kind, planned.fault.mode}];
    }
    Json json = Json::array();
    for (const auto& [kindAndMode, amount] : amounts) {
        json.push_back({NameOf(kindAndMode.first), NameOf(kindAndMode.second), amount});
    }
    return json;
}

class Worker {
  public:
    explicit Worker(const WorkerOptions& options)
        : mOptions(options), mFolder(options.workFolder, options.pluginName), mFile(options.scenario) {
        mResults.Open(options.results, L"wb");
    }

    int Work() {
        const Scenario scenario =
            WithoutRandomMessages(mFile.Read(mOptions.caseName, mFolder.PlaceholdersForScenarios()));
        mReset.emplace(scenario, mFolder, mOptions.kit);
        Scenario faulty = scenario;
        // What a fault has prevented cannot be played on.
        faulty.goesOnWhenNotReached = true;
        // The first run in a process does what is done once, and is none to compare with.
        if (!Replay(scenario, "unplayable", false)) {
            return 0;
        }
        if (!Replay(scenario, "unplayable", true)) {
            return 0;
        }
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
            Tell({{"replaying", unreplayed}});
            if (!Replay(scenario, "replay_failed", false)) {
                return 0;
            }
            unreplayed = i + 1;
            Tell({{"replayed", unreplayed}});
        }
        Tell({{"done", true}});
        return 0;
    }

  private:
    void Tell(const Json& line) { mResults.Write(line.dump(-1, ' ', false, Json::error_handler_t::replace)); }

    SweepRun Play(const Scenario& scenario, std::optional<Fault> fault, bool records) {
        mReset->Reset();
        return PlayOnce(scenario, mFolder, fault, records);
    }

    // False when the scenario does not come out as it should.
    bool Replay(const Scenario& scenario, const char* otherwise, bool isRecorded) {
        SweepRun run = Play(scenario, std::nullopt, isRecorded);
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
        if (isRecorded) {
            mFaultless = std::move(run);
            mRecorded = TheInjector();
        }
        if (!verdict.complaints.empty()) {
            Tell({{otherwise, verdict.complaints}});
        }
        return verdict.complaints.empty();
    }

    // Tells what is left out of it on the way.
    std::vector<PlannedFault> MakePlan() {
        std::vector<PlannedFault> plan = AllFaults(mRecorded, mOptions.kinds, mOptions.modes);
        if (mOptions.number) {
            std::erase_if(plan, [&](const PlannedFault& planned) { return planned.fault.number != *mOptions.number; });
        }
        const Json offered = AmountsOf(plan);
        if (!mOptions.known.empty()) {
            KeepDistinct(plan, LinesOf(mOptions.known));
        }
        const Json distinct = AmountsOf(plan);
        KeepEvery(plan, mOptions.every);
        Json counted = Json::object();
        for (const Kind kind : mOptions.kinds) {
            counted[NameOf(kind)] = mRecorded.Count(kind);
        }
        Tell({{"counted", std::move(counted)},
              {"offered", offered},
              {"distinct", distinct},
              {"planned", AmountsOf(plan)}});
        return plan;
    }

    // False when the process can play no more.
    bool PlayFault(const Scenario& scenario, std::size_t index, const PlannedFault& planned) {
        Tell({{"begin", index}, {"fault", AsJson(planned)}});
        // One fault alone is looked at closely: that takes its time.
        const bool isDescribed = mOptions.number.has_value();
        const SweepRun run = Play(scenario, planned.fault, isDescribed);
        FaultVerdict verdict = JudgeFault(run, *mFaultless, TheInjector().Failures());
        std::int64_t injected = 0;
        for (const auto& [operation, times] : TheInjector().Failures()) {
            injected += times;
        }
        Json answers = Json::array();
        for (const auto& [answer, times] : run.answers) {
            answers.push_back({answer, times});
        }
        Tell({{"end", index},
              {"injected", injected},
              {"answers", std::move(answers)},
              {"unhandled", run.unhandled},
              {"lost", run.isLost},
              {"findings", verdict.findings},
              {"explained", verdict.explained},
              {"call",
               isDescribed ? WayTo(TheInjector().Calls(planned.fault.kind), planned.fault.number) : Json::array()},
              {"left", isDescribed ? WaysToWhatIsLeft(run) : Json::array()}});
        return !run.isLost;
    }

    // The functions of the plug-in on the way to a call, the innermost first.
    Json Described(const std::vector<std::uint32_t>& returns) const {
        std::vector<std::uint64_t> addresses;
        addresses.reserve(returns.size());
        for (const std::uint32_t offset : returns) {
            addresses.push_back(kAnyBase + offset - 1);  // into the call, and not behind it
        }
        const std::vector<Symbol> symbols = LookUpSymbols(mFolder.Plugin(), kAnyBase, addresses);
        Json places = Json::array();
        for (std::size_t i = 0; i < symbols.size(); ++i) {
            places.push_back(symbols[i].function.empty() ? OffsetInWords(addresses[i] - kAnyBase)
                                                         : InWords(symbols[i], "the plug-in"));
        }
        return places;
    }

    Json WayTo(const std::vector<CountedCall>& calls, std::size_t number) const {
        return number > calls.size() ? Json::array() : Described(calls[number - 1].returns);
    }

    // Of each way one more than without the fault.
    Json WaysToWhatIsLeft(const SweepRun& run) const {
        std::multiset<std::pair<std::string, std::vector<std::uint32_t>>> before;
        for (const Held& held : mFaultless->left) {
            before.insert({held.by, held.returns});
        }
        Json ways = Json::array();
        for (const Held& held : run.left) {
            if (const auto known = before.find({held.by, held.returns}); known != before.end()) {
                before.erase(known);
            } else if (ways.size() < kMostDescribed) {
                ways.push_back({{"by", held.by}, {"in", Described(held.returns)}});
            }
        }
        return ways;
    }

    const WorkerOptions& mOptions;
    RunFolder mFolder;
    ScenarioFile mFile;
    LineFile mResults;
    Injector mRecorded;
    std::optional<FolderReset> mReset;
    std::optional<SweepRun> mFaultless;
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
