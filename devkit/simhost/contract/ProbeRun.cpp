#include "simhost/contract/ProbeRun.h"

#include <windows.h>

#include <utility>

#include "doubles/common/Text.h"
#include "simhost/contract/PluginCoreWatch.h"
#include "simhost/launch/CaseRun.h"
#include "simhost/run/FlightRecorder.h"
#include "simhost/watch/HostWatch.h"

namespace simhost::contract {

namespace {

// For everything that is not the library's: beginning, looking up names, ending.
constexpr std::int64_t kOwnSeconds = 60;

// "rule: place: what": the place is the probe and its entry, which the contract's book knows better.
std::string WithoutPlace(const std::string& why) {
    const std::size_t place = why.find(": ");
    const std::size_t what = place == std::string::npos ? place : why.find(": ", place + 1);
    return what == std::string::npos ? why : why.substr(what + 2);
}

}  // namespace

ProbeOutcome RunInProcess(const Probe& probe, const std::filesystem::path& library, const std::filesystem::path& record,
                          const ProbeLimits& limits) {
    SetEnvironmentVariableW(kContractRecordVariable, record.c_str());
    const FlightRecorder recorder;
    const HostProgram program{
        KitFolder() / L"simhost.exe",
        {L"probe", Wide(probe.name), library.wstring(), L"--seconds", std::to_wstring(limits.probeSeconds)},
        library.parent_path()};
    // Threads that are left have a clause of their own.
    const WatchLimits watchLimits{limits.probeSeconds + limits.callSeconds + kOwnSeconds, limits.callSeconds, false};
    const HostEnd end = RunAndWatch(program, watchLimits, recorder);
    ContractRecord seen = ReadContractRecord(record);
    if (recorder.Read().lostLines != 0 && seen.refusal.empty()) {
        seen.refusal = "not all that was seen could be written";
    }
    std::optional<Loss> loss = LossOf(end.findings, seen.underWay, {Utf8(library.filename().wstring()), ""});
    if (loss && loss->finding) {
        loss->finding->seen = WithoutPlace(loss->finding->seen);
    }
    std::vector<std::string> notes = seen.notes;
    for (const Violation& violation : end.findings) {
        if (violation.rule == Rule::kTimeLimit) {
            notes.push_back("it was not finished: " + violation.text);
        }
    }
    return {std::move(seen), std::move(loss), std::move(notes)};
}

}  // namespace simhost::contract
