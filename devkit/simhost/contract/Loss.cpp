#include "simhost/contract/Loss.h"

#include <algorithm>
#include <iterator>

#include "simhost/watch/ExceptionWords.h"
#include "simhost/watch/HostWatch.h"

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
    {Rule::kHang, ClauseId::kHang},          {Rule::kModalDialog, ClauseId::kHang},
};

const Row* FindLoss(Rule rule) {
    const auto* const row = std::find_if(std::begin(kLosses), std::end(kLosses),
                                         [&](const Row& candidate) { return candidate.rule == rule; });
    return row == std::end(kLosses) ? nullptr : row;
}

ClauseId ClauseOfLoss(const Violation& loss, bool isEntryUnderWay) {
    const auto says = [&](const char* words) { return loss.text.find(words) != std::string::npos; };
    if (says("abort()")) {
        // A crash for a host, but a library that does so has decided it.
        return ClauseId::kEnded;
    }
    const bool hasLeftEntry = isEntryUnderWay && says(kRaisedException) && !says(kOnOtherThread);
    return hasLeftEntry ? ClauseId::kException : FindLoss(loss.rule)->clause;
}

// What else is in the process: not the library, nor anything that it brought along.
bool IsOfHost(const std::string& module, const std::string& plugin) {
    return module == plugin || module == "simhost.exe" || module.starts_with("PlugPlug");
}

// Its own code is to blame wherever it runs; what it may have brought along, only within one of its entries.
bool IsLibrarys(const Violation& loss, bool isEntryUnderWay, const Suspects& suspects) {
    const bool isFromOutside = loss.rule == Rule::kLostVerdict && loss.module.empty();
    if (isFromOutside) {
        return false;
    }
    return loss.module == suspects.library || (isEntryUnderWay && !IsOfHost(loss.module, suspects.plugin));
}

}  // namespace

std::optional<Loss> LossOf(std::span<const Violation> violations, const std::optional<EntryCall>& underWay,
                           const Suspects& suspects) {
    const auto loss = std::find_if(violations.begin(), violations.end(),
                                   [](const Violation& violation) { return FindLoss(violation.rule) != nullptr; });
    if (loss == violations.end()) {
        return std::nullopt;
    }
    const std::string why = std::string(NameOf(loss->rule)) + ": " + loss->text;
    if (!IsLibrarys(*loss, underWay.has_value(), suspects)) {
        return Loss{why, std::nullopt};
    }
    const EntryCall call = underWay.value_or(EntryCall{});
    return Loss{why, Finding{ClauseOfLoss(*loss, underWay.has_value()), call.entry, call.call, why}};
}

}  // namespace simhost::contract
