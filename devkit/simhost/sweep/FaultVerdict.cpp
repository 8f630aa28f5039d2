#include "simhost/sweep/FaultVerdict.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace simhost::sweep {

namespace {

// Stands for the name of a suite that the plug-in holds from its first message to its shut-down.
constexpr std::string_view kHeldSuite = "<held suite>";

constexpr Explanation kExplanations[] = {
    // Intentional: a table that is refused in part stays held as far as it was acquired, and one that cannot be given
    // back stays held from there on. The host's end takes it back.
    {"SP Basic Suite/AcquireSuite/<held suite>", "suite-leak <held suite>"},
    {"SP Basic Suite/ReleaseSuite/<held suite>", "suite-leak <held suite>"},
    {"SP Basic Suite/ReleaseSuite/*", "suite-leak *"},
    // Without the suite of strings nobody can give one back that the host has filled in. As long as the table of suites
    // is refused, it is not there.
    {"SP Basic Suite/AcquireSuite/<held suite>", "string-leak", Amount::kAny},
    {"SP Blocks Suite/FreeBlock", "block-leak"},
    {"AI Unicode String Suite/Destroy", "string-leak"},
    {"AI File Path Suite/DeleteFilePath", "path-leak"},
    {"AI MdMemory Suite/MdMemoryDisposeHandle", "handle-leak"},
    {"AI Timer Suite/SetTimerActive", "timer-left"},
    // To release begins with asking for the suite that does it, and with asking whether there is something to release.
    {"SP Basic Suite/AcquireSuite/SP Blocks Suite", "block-leak"},
    {"SP Basic Suite/AcquireSuite/AI Timer Suite", "timer-left"},
    {"AI Timer Suite/GetTimerActive", "timer-left"},
    {"UnhookWindowsHookEx", "hook-left"},
    {"UnhookWindowsHookEx", "SetWindowsHookExW"},
    {"CloseHandle", "CreateFileW"},
    {"CloseHandle", "OpenProcess"},
    {"CloseHandle", "CreateSemaphoreW"},
    {"FreeLibrary", "LoadLibraryA"},
    {"FreeLibrary", "LoadLibraryW"},
    {"FreeLibrary", "GetModuleHandleExW"},
    {"fclose", "fopen"},
    {"fclose", "_wfopen"},
};

// What the plug-in keeps until it is unloaded, on purpose. A fault may let it come so far when nothing does without it:
// a launch-info file that cannot be read is passed over, and the library that the next place names is found.
struct Kept {
    const char* giver;
    std::int64_t most;
    const char* with;  // only when the run without a fault keeps none of these, and this one does
};

constexpr Kept kKept[] = {
    // The PluginCore's library, and the loader with two texts.
    {"LoadLibraryA", 1, "LoadLibraryA"},
    {"malloc", 3, "LoadLibraryA"},
    // The process beside whose program it was found.
    {"OpenProcess", 1, "OpenProcess"},
    // The messaging library, and the search for it.
    {"LoadLibraryW", 1, "LoadLibraryW"},
    {"FindFirstFileW", 1, "FindFirstFileW"},
};

// Of the other rules, those about what a scenario expects say nothing about a run in which something failed.
constexpr Rule kRulesThatAlwaysHold[] = {
    Rule::kContract,      Rule::kCrash,          Rule::kTrapSlot,    Rule::kSuiteNotHeld, Rule::kSuiteLeak,
    Rule::kReferenceLeak, Rule::kStringLeak,     Rule::kPathLeak,    Rule::kBlockLeak,    Rule::kBlockOverrun,
    Rule::kHandleLeak,    Rule::kStaleReference, Rule::kBadArgument, Rule::kWrongThread,  Rule::kTimerLeft,
    Rule::kHookLeft,      Rule::kMessagePath,
};

bool AlwaysHolds(Rule rule) {
    return std::find(std::begin(kRulesThatAlwaysHold), std::end(kRulesThatAlwaysHold), rule) !=
           std::end(kRulesThatAlwaysHold);
}

bool IsHeldSuite(std::string_view name) {
    constexpr std::string_view kBesideTextEngine[] = {
        "AI Document Suite", "AI File Path Suite",      "AI Font Suite",   "AI Matching Art Suite",
        "AI MdMemory Suite", "AI Notifier Suite",       "AI Placed Suite", "AI Text Frame Suite",
        "AI User Suite",     "AI Unicode String Suite", "SP Blocks Suite",
    };
    return name.starts_with("ATE ") ||
           std::find(std::begin(kBesideTextEngine), std::end(kBesideTextEngine), name) != std::end(kBesideTextEngine);
}

bool Matches(std::string_view name, std::string_view pattern) {
    if (pattern.ends_with(kHeldSuite)) {
        const std::string_view begin = pattern.substr(0, pattern.size() - kHeldSuite.size());
        return name.starts_with(begin) && IsHeldSuite(name.substr(begin.size()));
    }
    return pattern.ends_with('*') ? name.starts_with(pattern.substr(0, pattern.size() - 1)) : name == pattern;
}

// Suites are told apart: the text begins with the name in quotation marks.
std::string KeyOf(const Violation& violation) {
    std::string key = NameOf(violation.rule);
    if (violation.rule == Rule::kSuiteLeak) {
        key += " " + violation.text.substr(1, violation.text.find('"', 1) - 1);
    }
    return key;
}

struct Broken {
    std::int64_t amount = 0;
    std::vector<std::string> texts;
};

std::map<std::string, Broken> BrokenByKey(const SweepRun& run) {
    std::map<std::string, Broken> broken;
    for (const Violation& violation : run.violations) {
        if (AlwaysHolds(violation.rule)) {
            Broken& ofKey = broken[KeyOf(violation)];
            ofKey.amount += violation.amount;
            ofKey.texts.push_back(violation.text);
        }
    }
    return broken;
}

class Judge {
  public:
    Judge(const SweepRun& faultless, const std::map<std::string, std::int64_t>& failures)
        : mFaultless(faultless), mFailures(failures) {}

    FaultVerdict OfRun(const SweepRun& run) {
        if (run.isLost) {
            // Nothing of the run is known but this.
            return {{"an exception left the plug-in"}, {}};
        }
        JudgeMessages(run);
        JudgeRules(run);
        JudgeWhatIsLeft(run);
        return std::move(mVerdict);
    }

  private:
    void JudgeMessages(const SweepRun& run) {
        if (run.refused.size() > mFaultless.refused.size()) {
            mVerdict.findings.push_back("a message was refused, as if another were being handled: " +
                                        run.refused.back());
        }
        if (!run.isNextHandled) {
            mVerdict.findings.emplace_back("the message after the last step was refused");
        }
    }

    void JudgeRules(const SweepRun& run) {
        const auto before = BrokenByKey(mFaultless);
        for (const auto& [key, broken] : BrokenByKey(run)) {
            const auto known = before.find(key);
            const std::int64_t more = broken.amount - (known == before.end() ? 0 : known->second.amount);
            if (more > 0 && !Explain(key, more)) {
                std::string texts;
                for (const std::string& text : broken.texts) {
                    texts += (texts.empty() ? "" : "; ") + text;
                }
                mVerdict.findings.push_back(key + ": " + texts);
            }
        }
    }

    void JudgeWhatIsLeft(const SweepRun& run) {
        for (const auto& [giver, count] : run.leftByGiver) {
            const auto known = mFaultless.leftByGiver.find(giver);
            const std::int64_t more = count - (known == mFaultless.leftByGiver.end() ? 0 : known->second);
            if (more > 0 && !Explain(giver, more) && !IsKept(giver, more, run)) {
                mVerdict.findings.push_back("left: " + std::to_string(more) + " of " + giver);
            }
        }
    }

    static std::int64_t CountOf(const SweepRun& run, const char* giver) {
        const auto found = run.leftByGiver.find(giver);
        return found == run.leftByGiver.end() ? 0 : found->second;
    }

    bool IsKept(const std::string& giver, std::int64_t more, const SweepRun& run) {
        const bool isKept = std::any_of(std::begin(kKept), std::end(kKept), [&](const Kept& kept) {
            return kept.giver == giver && more <= kept.most && CountOf(mFaultless, kept.with) == 0 &&
                   CountOf(run, kept.with) != 0;
        });
        if (isKept) {
            mVerdict.explained[giver + " kept on purpose by a plug-in that came further"] += more;
        }
        return isKept;
    }

    // Each failed release explains one thing that is left.
    bool Explain(const std::string& left, std::int64_t amount) {
        for (const Explanation& explanation : kExplanations) {
            if (!Matches(left, explanation.left)) {
                continue;
            }
            std::int64_t failed = 0;
            for (const auto& [operation, times] : mFailures) {
                failed += Matches(operation, explanation.failed) ? times : 0;
            }
            if (failed >= amount || (failed != 0 && explanation.amount == Amount::kAny)) {
                mVerdict.explained[std::string(explanation.left) + " after a failed " + explanation.failed] += amount;
                return true;
            }
        }
        return false;
    }

    const SweepRun& mFaultless;
    const std::map<std::string, std::int64_t>& mFailures;
    FaultVerdict mVerdict;
};

}  // namespace

FaultVerdict JudgeFault(const SweepRun& run, const SweepRun& faultless,
                        const std::map<std::string, std::int64_t>& failures) {
    return Judge(faultless, failures).OfRun(run);
}

std::span<const Explanation> Explanations() { return kExplanations; }

}  // namespace simhost::sweep
