#include "simhost/contract/DayLoss.h"

#include <algorithm>
#include <iterator>

#include "simhost/launch/RunFolder.h"

namespace simhost::contract {

namespace {

struct Row {
    Rule rule;
    ClauseId clause;
};

// The ways in which a process is lost.
constexpr Row kLosses[] = {
    {Rule::kCrash, ClauseId::kCrash},        {Rule::kFailFast, ClauseId::kEnded},
    {Rule::kProcessEnded, ClauseId::kEnded}, {Rule::kLostVerdict, ClauseId::kEnded},
    {Rule::kHang, ClauseId::kHang},          {Rule::kTimeLimit, ClauseId::kHang},
    {Rule::kModalDialog, ClauseId::kDialog},
};

const Row* FindLoss(Rule rule) {
    const auto* const row = std::find_if(std::begin(kLosses), std::end(kLosses),
                                         [&](const Row& candidate) { return candidate.rule == rule; });
    return row == std::end(kLosses) ? nullptr : row;
}

ClauseId ClauseOfLoss(const Violation& loss) {
    // A crash for a host, but a library that does so has decided it.
    const bool isAbort = loss.text.find("abort()") != std::string::npos;
    return isAbort ? ClauseId::kEnded : FindLoss(loss.rule)->clause;
}

// What else is in the process: not the library, nor anything that it brought along.
bool IsOfHost(const std::string& module, const std::string& plugin) {
    return module == plugin || module == "simhost.exe" || module.starts_with("PlugPlug");
}

// Its own code is to blame wherever it runs; what it may have brought along, only within one of its entries.
bool IsLibrarys(const Violation& loss, bool isEntryUnderWay, const std::string& plugin) {
    return loss.module == kPluginCoreName || (isEntryUnderWay && !IsOfHost(loss.module, plugin));
}

// Without a loss. That nothing was called at all says more than what follows from it.
std::string ReasonOf(const Verdict& verdict) {
    for (const Violation& violation : verdict.violations) {
        if (violation.rule == Rule::kUnrecorded) {
            return violation.text;
        }
    }
    return verdict.complaints.empty() ? "the host has not said why" : verdict.complaints.front();
}

}  // namespace

DayLoss LossOf(const Verdict& verdict, const std::optional<EntryCall>& underWay, const std::string& plugin) {
    const auto loss = std::find_if(verdict.violations.begin(), verdict.violations.end(),
                                   [](const Violation& violation) { return FindLoss(violation.rule) != nullptr; });
    if (loss == verdict.violations.end()) {
        return {ReasonOf(verdict), std::nullopt};
    }
    const std::string why = std::string(NameOf(loss->rule)) + ": " + loss->text;
    if (!IsLibrarys(*loss, underWay.has_value(), plugin)) {
        return {why, std::nullopt};
    }
    const EntryCall call = underWay.value_or(EntryCall{});
    return {why, Finding{ClauseOfLoss(*loss), call.entry, call.call, why}};
}

}  // namespace simhost::contract
