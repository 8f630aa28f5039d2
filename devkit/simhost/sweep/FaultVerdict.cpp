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
    {"SP Basic Suite/AcquireSuite/<held suite>", "suite-leak <held suite>", Amount::kAny},
    {"SP Basic Suite/ReleaseSuite/<held suite>", "suite-leak <held suite>", Amount::kAny},
    {"SP Basic Suite/ReleaseSuite/*", "suite-leak *"},
    // Without the suite of strings nobody can give one back that the host has filled in. It is the last
    // but one of the table: whichever suite before is refused, it is not there.
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

// The star of the one pattern stands for the same text as that of the other.
std::string BoundTo(std::string_view left, const Explanation& explanation) {
    std::string failed = explanation.failed;
    if (failed.ends_with('*')) {
        failed.pop_back();
        failed += left.substr(std::string_view(explanation.left).size() - 1);
    }
    return failed;
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
        // In a run in which something failed, something else may happen than what the scenario expects.
        if (!IsAboutExpectations(violation.rule)) {
            Broken& ofKey = broken[KeyOf(violation)];
            ofKey.amount += violation.amount;
            ofKey.texts.push_back(violation.text);
        }
    }
    return broken;
}

class Judge {
  public:
    Judge(const SweepRun& faultless, const Failures& failures)
        : mFaultless(faultless), mBehindRules(failures), mBehindHoldings(failures) {}

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
            if (more > 0 && !Explain(key, more, mBehindRules)) {
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
            if (more > 0 && !Explain(giver, more, mBehindHoldings) && !IsKept(giver, more, run)) {
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

    // Each failed release explains one thing that is left, so it is taken out of those that explain something else.
    bool Explain(const std::string& left, std::int64_t amount, Failures& unused) {
        std::int64_t unexplained = amount;
        for (const Explanation& explanation : kExplanations) {
            if (!Matches(left, explanation.left)) {
                continue;
            }
            const std::string failed = BoundTo(left, explanation);
            for (auto& [operation, times] : unused) {
                if (times == 0 || !Matches(operation, failed)) {
                    continue;
                }
                const bool explainsAll = explanation.amount == Amount::kAny;
                const std::int64_t explained = explainsAll ? unexplained : std::min(unexplained, times);
                times -= explainsAll ? 0 : explained;
                unexplained -= explained;
                if (explained != 0) {
                    mVerdict.explained[std::string(explanation.left) + " after a failed " + explanation.failed] +=
                        explained;
                }
            }
        }
        return unexplained == 0;
    }

    const SweepRun& mFaultless;
    // What is left may break a rule of the host and be counted by who gave it, both for the same reason.
    Failures mBehindRules;
    Failures mBehindHoldings;
    FaultVerdict mVerdict;
};

}  // namespace

FaultVerdict JudgeFault(const SweepRun& run, const SweepRun& faultless, const Failures& failures) {
    return Judge(faultless, failures).OfRun(run);
}

std::span<const Explanation> Explanations() { return kExplanations; }

}  // namespace simhost::sweep
