#include "simhost/contract/ProbeRun.h"

#include <windows.h>

#include <algorithm>
#include <iterator>

#include "doubles/common/Text.h"
#include "simhost/contract/PluginCoreWatch.h"
#include "simhost/launch/CaseRun.h"
#include "simhost/run/FlightRecorder.h"
#include "simhost/watch/ExceptionWords.h"
#include "simhost/watch/HostWatch.h"

namespace simhost::contract {

namespace {

// For everything that is not the library's: beginning, looking up names, ending.
constexpr std::int64_t kOwnSeconds = 60;

// The words of a finding begin with the place in the run, which the contract's book knows better.
std::string WithoutPlace(const std::string& text) {
    const std::size_t colon = text.find(": ");
    return colon == std::string::npos ? text : text.substr(colon + 2);
}

ClauseId ClauseOfCrash(const std::string& text, bool isInEntry) {
    if (text.find("abort() was called") != std::string::npos) {
        return ClauseId::kEnded;
    }
    const bool hasLeftEntry =
        isInEntry && text.find(kRaisedException) != std::string::npos && text.find(kOnOtherThread) == std::string::npos;
    return hasLeftEntry ? ClauseId::kException : ClauseId::kCrash;
}

// Nothing for what says nothing about the library: threads and processes that are left have clauses of their own.
std::optional<ClauseId> ClauseOf(const Violation& violation, bool isInEntry) {
    switch (violation.rule) {
        case Rule::kCrash:
            return ClauseOfCrash(violation.text, isInEntry);
        case Rule::kFailFast:
        case Rule::kProcessEnded:
        case Rule::kLostVerdict:
            return ClauseId::kEnded;
        case Rule::kHang:
        case Rule::kModalDialog:
            return ClauseId::kHang;
        default:
            return std::nullopt;
    }
}

// While no entry is called, only code of the library's own on the stack proves anything against it.
bool IsToBlame(const Violation& violation, const ContractRecord& seen, const std::filesystem::path& library) {
    return seen.underWay || violation.text.find(Utf8(library.filename().wstring())) != std::string::npos;
}

void Judge(const Violation& violation, const std::filesystem::path& library, ProbeOutcome& outcome) {
    const std::string text = WithoutPlace(violation.text);
    const std::optional<ClauseId> clause = ClauseOf(violation, outcome.seen.underWay.has_value());
    if (clause && IsToBlame(violation, outcome.seen, library)) {
        const EntryCall call = outcome.seen.underWay.value_or(EntryCall{});
        outcome.loss = Finding{*clause, call.entry, call.call, text};
    } else if (clause || violation.rule == Rule::kTimeLimit) {
        outcome.notes.push_back("it was not finished, and no entry was being called: " + text);
    }
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
    const HostEnd end =
        RunAndWatch(program, {limits.probeSeconds + limits.callSeconds + kOwnSeconds, limits.callSeconds}, recorder);
    ProbeOutcome outcome{ReadContractRecord(record), std::nullopt, {}};
    outcome.notes = outcome.seen.notes;
    for (const Violation& violation : end.findings) {
        Judge(violation, library, outcome);
    }
    return outcome;
}

}  // namespace simhost::contract
