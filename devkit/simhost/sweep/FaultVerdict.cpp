#include "simhost/sweep/FaultVerdict.h"

#include <algorithm>
#include <span>

#include "simhost/sweep/Explanations.h"

namespace simhost::sweep {

namespace {

constexpr std::int32_t kRefused = 1;

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
        // Steps that a fault makes impossible are passed over: a story always comes to its end.
        if (!run.brokenOff.empty()) {
            mVerdict.findings.push_back("the story could not go on: " + run.brokenOff);
        }
        JudgeMessages(run);
        JudgeRules(run);
        JudgeWhatIsLeft(run);
        return std::move(mVerdict);
    }

  private:
    void JudgeMessages(const SweepRun& run) {
        // Which ones, and not how many: one that a fault keeps from being sent would hide another.
        std::map<std::string, int> expected;
        for (const std::string& message : mFaultless.refused) {
            ++expected[message];
        }
        for (const std::string& message : run.refused) {
            if (--expected[message] < 0) {
                mVerdict.findings.push_back("a message was refused, as if another were being handled: " + message);
                break;
            }
        }
        JudgeNext(run);
    }

    void JudgeNext(const SweepRun& run) {
        if (run.aboutAnswer == kRefused || run.shutdownAnswer == kRefused) {
            mVerdict.findings.emplace_back("a message after the last step was refused");
        } else if (run.aboutAnswer.value_or(0) != 0 && run.aboutAnswer != mFaultless.aboutAnswer) {
            // 0: the fault may have kept the plug-in from starting, so that it has nothing to tell of itself.
            mVerdict.findings.push_back("the message after the last step was answered with " +
                                        std::to_string(*run.aboutAnswer));
        }
    }

    void JudgeRules(const SweepRun& run) {
        const auto before = BrokenByKey(mFaultless);
        for (const auto& [key, broken] : BrokenByKey(run)) {
            const auto known = before.find(key);
            // A PluginCore that breaks its contract without a fault breaks it elsewhere when the calls are others.
            if (key == NameOf(Rule::kContract) && known != before.end()) {
                continue;
            }
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
        const std::span<const Kept> onPurpose = KeptOnPurpose();
        const bool isKept = std::any_of(onPurpose.begin(), onPurpose.end(), [&](const Kept& kept) {
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
        for (const Explanation& explanation : Explanations()) {
            if (!explanation.IsAbout(left)) {
                continue;
            }
            for (auto& [operation, times] : unused) {
                if (times == 0 || !explanation.IsBehind(operation, left)) {
                    continue;
                }
                const bool explainsAll = explanation.amount == Amount::kAny;
                const std::int64_t explained = explainsAll ? unexplained : std::min(unexplained, times);
                times -= explanation.amount == Amount::kEach ? explained : 0;
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

}  // namespace simhost::sweep
