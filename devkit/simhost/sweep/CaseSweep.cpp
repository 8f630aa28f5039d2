#include "simhost/sweep/CaseSweep.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <stdexcept>
#include <utility>

#include "doubles/common/Text.h"
#include "simhost/launch/Leftovers.h"
#include "simhost/launch/PlayChecks.h"
#include "simhost/report/Summary.h"

namespace simhost::sweep {

namespace {

using Json = nlohmann::ordered_json;

// A worker may play for hours; what takes too long is a step of it.
constexpr std::int64_t kRunSeconds = std::int64_t{24} * 60 * 60;

std::vector<std::string> TextsOf(const Json& array) { return array.get<std::vector<std::string>>(); }

// A line that was not written to its end when the process was lost says nothing.
std::vector<Json> LinesOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    std::vector<Json> lines;
    for (std::string line; std::getline(stream, line);) {
        Json json = Json::parse(line, nullptr, false);
        if (!json.is_discarded()) {
            lines.push_back(std::move(json));
        }
    }
    return lines;
}

void WriteLines(const std::filesystem::path& file, const std::set<std::string>& lines) {
    std::ofstream stream(file, std::ios::binary);
    for (const std::string& line : lines) {
        stream << line << "\n";
    }
    if (!stream.flush()) {
        throw std::runtime_error("cannot write " + Utf8(file.wstring()));
    }
}

std::string Joined(const std::vector<std::string>& texts) {
    std::string all;
    for (const std::string& text : texts) {
        all += (all.empty() ? "" : "; ") + text;
    }
    return all;
}

Fault FaultOf(const Json& fault) {
    return {KindNamed(fault.at("kind").get<std::string>()).value(),
            ModeNamed(fault.at("mode").get<std::string>()).value(), fault.at("number").get<std::size_t>()};
}

std::vector<std::string> Details(const Json& end) {
    std::vector<std::string> details;
    for (const Json& place : end.at("call")) {
        details.push_back((details.empty() ? "the call, in " : "  called in ") + place.get<std::string>());
    }
    for (const Json& left : end.at("left")) {
        std::string line = "left by " + left.at("by").get<std::string>() + ", in";
        for (const Json& place : left.at("in")) {
            line += " " + place.get<std::string>() + ",";
        }
        line.pop_back();
        details.push_back(std::move(line));
    }
    return details;
}

}  // namespace

CaseSweep::CaseSweep(const ScenarioFile& file, std::string caseName, const SweepOptions& options,
                     std::set<std::string>& known, SweepTotals& totals, OnFinding onFinding)
    : mFile(file),
      mCase(std::move(caseName)),
      mOptions(options),
      mKnown(known),
      mTotals(totals),
      mOnFinding(std::move(onFinding)),
      mSetting(file, mCase, OptionsOfRun()),
      mResults(mSetting.Folder().Root() / L"sweep.jsonl"),
      mKnownFile(mSetting.Folder().Root() / L"known.txt") {}

RunOptions CaseSweep::OptionsOfRun() const {
    RunOptions run;
    run.plugin = mOptions.plugin;
    run.workFolder = FolderOfRuns() / (FolderNameOf(mFile, mCase) + L"-" + std::to_wstring(GetCurrentProcessId()));
    run.workFolder.make_preferred();
    run.noWait = mOptions.noWait;
    run.timeLimitSeconds = kRunSeconds;
    run.stepTimeLimitSeconds = mOptions.stepTimeLimitSeconds;
    return run;
}

std::vector<std::wstring> CaseSweep::ArgumentsFor(const Part& part) const {
    const RunFolder& folder = mSetting.Folder();
    std::vector<std::wstring> arguments = {L"sweep-worker",   std::filesystem::absolute(mFile.Path()).wstring(),
                                           L"--work-folder",  folder.Root().wstring(),
                                           L"--kit",          KitFolder().wstring(),
                                           L"--plugin-name",  folder.Plugin().filename().wstring(),
                                           L"--results",      mResults.wstring(),
                                           L"--every",        std::to_wstring(mOptions.every),
                                           L"--first",        std::to_wstring(part.first),
                                           L"--last",         std::to_wstring(part.last),
                                           L"--replay-every", std::to_wstring(part.replayEvery)};
    const auto add = [&](const wchar_t* option, const std::wstring& value) {
        arguments.emplace_back(option);
        arguments.push_back(value);
    };
    for (const Kind kind : mOptions.kinds) {
        add(L"--kind", Wide(NameOf(kind)));
    }
    for (const Mode mode : mOptions.modes) {
        add(L"--mode", Wide(NameOf(mode)));
    }
    if (!mCase.empty()) {
        add(L"--case", Wide(mCase));
    }
    if (mOptions.number) {
        add(L"--number", std::to_wstring(*mOptions.number));
    }
    if (mOptions.distinct) {
        add(L"--known", mKnownFile.wstring());
    }
    return arguments;
}

void CaseSweep::Play() {
    mParts.push_back({0, SIZE_MAX, mOptions.replayEvery, false});
    while (!mParts.empty()) {
        const Part part = mParts.front();
        mParts.pop_front();
        PlayPart(part);
    }
    for (const auto& [index, fault] : mFaults) {
        mKnown.insert(fault.at("key").get<std::string>());
    }
}

void CaseSweep::PlayPart(const Part& part) {
    // What a lost process has left is no beginning.
    if (!std::exchange(mIsFresh, false)) {
        mSetting.LayOutAgain();
    }
    // The plan of all parts must be the same: what becomes known on the way is added in the end.
    WriteLines(mKnownFile, mKnown);
    const FlightRecorder recorder;
    WatchLimits limits = LimitsOf(mSetting.Story(), OptionsOfRun());
    limits.tellsThreadsLeft = false;
    const HostEnd end =
        RunAndWatch({mSetting.Folder().Program(), ArgumentsFor(part), mSetting.Folder().Root()}, limits, recorder);
    Told told;
    told.begun = part.first;
    told.replayed = part.first;
    for (const Json& line : LinesOf(mResults)) {
        Read(line, part, told);
    }
    GoOnAfter(part, told, end);
}

void CaseSweep::Read(const Json& line, const Part& part, Told& told) {
    if (line.contains("unplayable")) {
        told.isPlayable = false;
        told.complaints = TextsOf(line.at("unplayable"));
    } else if (line.contains("counted") && !std::exchange(mIsCounted, true)) {
        CountPlan(line);
    } else if (line.contains("begin")) {
        told.begun = line.at("begin").get<std::size_t>() + 1;
        told.isEnded = false;
        told.isPlayedAgain = false;
        mFaults[told.begun - 1] = line.at("fault");
    } else if (line.contains("instance") && !std::exchange(mIsInstanceTold, true)) {
        if (const std::string why = line.at("instance").get<std::string>(); !why.empty()) {
            mTotals.notPlayableTwice.push_back(mFile.PlaceOf(mCase) + ": " + why);
        }
    } else if (line.contains("end")) {
        told.isEnded = true;
        Count(line, part.isRepeated);
    } else if (line.contains("again")) {
        told.isPlayedAgain = true;
    } else if (line.contains("replayed")) {
        told.replayed = line.at("replayed").get<std::size_t>();
    } else if (line.contains("replay_failed")) {
        told.complaints = TextsOf(line.at("replay_failed"));
    } else if (line.contains("done")) {
        told.isDone = true;
    }
}

void CaseSweep::CountPlan(const Json& counted) {
    for (const auto& [kind, count] : counted.at("counted").items()) {
        mTotals.calls[static_cast<std::size_t>(KindNamed(kind).value())] += count.get<std::int64_t>();
    }
    const auto add = [&](const char* key, std::int64_t FaultCounts::*count, std::int64_t sign) {
        for (const Json& amount : counted.at(key)) {
            const Fault fault{KindNamed(amount.at(0).get<std::string>()).value(),
                              ModeNamed(amount.at(1).get<std::string>()).value()};
            mTotals.Of(fault).*count += sign * amount.at(2).get<std::int64_t>();
        }
    };
    add("offered", &FaultCounts::offered, 1);
    add("offered", &FaultCounts::sameWay, 1);
    add("distinct", &FaultCounts::sameWay, -1);
    add("distinct", &FaultCounts::passedOver, 1);
    add("planned", &FaultCounts::passedOver, -1);
}

void CaseSweep::Count(const Json& end, bool isRepeated) {
    if (isRepeated) {
        return;
    }
    const Json& fault = mFaults.at(end.at("end").get<std::size_t>());
    FaultCounts& counts = mTotals.Of(FaultOf(fault));
    const auto injected = end.at("injected").get<std::int64_t>();
    const bool answersZeroOnly = std::all_of(end.at("answers").begin(), end.at("answers").end(),
                                             [](const Json& answer) { return answer.at(0) == 0; });
    ++counts.played;
    counts.notReached += injected == 0 ? 1 : 0;
    counts.failedCalls += injected;
    counts.unhandled += end.at("unhandled") != 0 ? 1 : 0;
    counts.lost += end.at("lost") == true ? 1 : 0;
    counts.playedAgain += end.at("again") == true ? 1 : 0;
    ++(answersZeroOnly ? counts.answeredZero : counts.answeredCode);
    mTotals.operations.insert(fault.at("operation").get<std::string>());
    for (const auto& [what, amount] : end.at("explained").items()) {
        mTotals.explained[what] += amount.get<std::int64_t>();
    }
    const std::vector<std::string> findings = TextsOf(end.at("findings"));
    if (!findings.empty()) {
        Find(fault, findings, Details(end));
    } else if (mOptions.number) {
        mOnFinding({mFile.PlaceOf(mCase), AsOptions(FaultOf(fault)), fault.at("operation").get<std::string>(), {}},
                   Details(end));
    }
}

// What follows when the worker did not come to its end: the fault, or the run without faults, at which it stopped is a
// finding; the next worker goes on behind it.
void CaseSweep::GoOnAfter(const Part& part, const Told& told, const HostEnd& end) {
    std::vector<std::string> seen;
    for (const Violation& violation : end.findings) {
        seen.push_back(std::string(NameOf(violation.rule)) + ": " + violation.text);
    }
    if (!told.isPlayable || told.begun == part.first) {
        if (!told.isDone || !seen.empty()) {
            seen.insert(seen.end(), told.complaints.begin(), told.complaints.end());
            throw std::runtime_error("without a fault, several times in one process: " + Joined(seen));
        }
        return;
    }
    if (told.isDone) {
        if (!seen.empty()) {
            Find(mFaults.at(told.begun - 1), {"when all was played, the process did not end well: " + Joined(seen)});
        }
        return;
    }
    const Part rest{told.begun, part.last, part.replayEvery, part.isRepeated};
    const Json& last = mFaults.at(told.begun - 1);
    if (!told.isEnded) {
        if (!part.isRepeated) {
            FindLost(last, told.isPlayedAgain, seen.empty() ? std::vector<std::string>{"the process ended"} : seen);
        }
    } else if (told.complaints.empty() && seen.empty()) {
        // An exception has left the plug-in: told already.
    } else if (told.begun - told.replayed == 1) {
        seen.insert(seen.end(), told.complaints.begin(), told.complaints.end());
        Find(last, {"the same scenario without a fault failed afterwards: " + Joined(seen)});
    } else {
        // One of several: each is followed by a run of its own now.
        mParts.push_front({told.begun, part.last, part.replayEvery, part.isRepeated});
        mParts.push_front({told.replayed, told.begun, 1, true});
        return;
    }
    mParts.push_front(rest);
    // Those before the lost one have had no run without faults behind them yet.
    if (told.begun - 1 > told.replayed) {
        mParts.push_front({told.replayed, told.begun - 1, part.replayEvery, true});
    }
}

void CaseSweep::FindLost(const Json& fault, bool isPlayedAgain, const std::vector<std::string>& seen) {
    FaultCounts& counts = mTotals.Of(FaultOf(fault));
    ++counts.played;
    ++counts.lost;
    const std::string again = "in the next run of the same instance, without a fault: ";
    Find(fault, isPlayedAgain ? std::vector{again + Joined(seen)} : seen);
}

void CaseSweep::Find(const Json& fault, const std::vector<std::string>& texts,
                     const std::vector<std::string>& details) {
    ++mTotals.Of(FaultOf(fault)).withFindings;
    std::string repeat = AsShellWord(Utf8(mFile.Path().generic_wstring()));
    if (!mCase.empty()) {
        repeat += " --case " + AsShellWord(mCase);
    }
    if (!mOptions.plugin.empty()) {
        repeat += " --plugin " + AsShellWord(Utf8(mOptions.plugin.generic_wstring()));
    }
    repeat += " " + AsOptions(FaultOf(fault));
    SweepFinding finding{mFile.PlaceOf(mCase), std::move(repeat), fault.at("operation").get<std::string>(), texts};
    mOnFinding(finding, details);
    mTotals.findings.push_back(std::move(finding));
}

}  // namespace simhost::sweep
