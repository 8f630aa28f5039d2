// The rules that a run checks, each by name, and the record of broken ones. A run passes when exactly the violations
// occurred that its scenario or test expects: usually none.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace simhost {

enum class Rule {
    kPropertyList,
    kPluginLoad,
    kReply,
    kCalls,
    kContract,
    kUnrecorded,
    kHostCalls,
    kBoxes,
    kDialog,
    kLibrary,
    kMessagingLibrary,
    kBusCalls,
    kPanelEvents,
    kForeground,
    kCrash,
    kNotReached,
    kTrapSlot,
    kSuiteNotHeld,
    kSuiteLeak,
    kReferenceLeak,
    kStringLeak,
    kPathLeak,
    kBlockLeak,
    kBlockOverrun,
    kHandleLeak,
    kStaleReference,
    kBadArgument,
    kWrongThread,
    kTimerLeft,
    kHookLeft,
    kHostState,
    kTicks,
    kState,
    kMessagePath,
    kReentrancy,
    kRandomMessages,
    kTimeLimit,
    kHang,
    kModalDialog,
    kProcessEnded,
    kFailFast,
    kLostVerdict,
    kProcessLeft,
    kThreadLeft,
};

struct RuleName {
    Rule rule;
    const char* name;
};

std::span<const RuleName> AllRules();
const char* NameOf(Rule rule);
// Null when there is no rule of that name.
const RuleName* FindRule(std::string_view name);
// Whether the rule asks for what a scenario expects to happen, and not for what holds whatever happens.
bool IsAboutExpectations(Rule rule);

struct Violation {
    Rule rule;
    std::int64_t amount;  // of what was leaked, for example; 1 where there is nothing to count
    std::string text;
    std::string module{};  // the file name of the program or library whose code did it; empty when that is not known
};

class RuleBook {
  public:
    void Broken(Rule rule, std::string text, std::int64_t amount = 1);
    void Broken(Violation violation);

    const std::vector<Violation>& Violations() const { return mViolations; }

    // Whether somebody else is to blame, as the caller knows: then nothing is noted. May be empty.
    std::function<bool(const Violation&)> excuse;
    // Put behind the texts: where it happened, when the step alone does not say. May be empty.
    std::string where;
    // Is told of each violation as it is noted; may be empty.
    std::function<void(const Violation&)> onBroken;

  private:
    std::vector<Violation> mViolations;
};

}  // namespace simhost
