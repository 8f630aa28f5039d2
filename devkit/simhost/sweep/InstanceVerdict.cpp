#include "simhost/sweep/InstanceVerdict.h"

#include <algorithm>
#include <map>
#include <optional>
#include <regex>
#include <set>

#include "simhost/sweep/LastingEffects.h"

namespace simhost::sweep {

namespace {

std::string InWords(const std::optional<std::int32_t>& answer) { return answer ? std::to_string(*answer) : "nothing"; }

// Addresses and handles are others in each run.
std::string WithoutNumbers(const std::string& text) {
    static const std::regex sNumber("0x[0-9A-Fa-f]+");
    return std::regex_replace(text, sNumber, "0x...");
}

// By rule, each with how much of it.
std::map<std::string, std::multiset<std::string>> BrokenByRule(const SweepRun& run) {
    std::map<std::string, std::multiset<std::string>> broken;
    for (const Violation& violation : run.violations) {
        broken[NameOf(violation.rule)].insert(WithoutNumbers(violation.text) + " (" + std::to_string(violation.amount) +
                                              ")");
    }
    return broken;
}

class Comparison {
  public:
    Comparison(const SweepRun& run, const SweepRun& expected) : mRun(run), mExpected(expected) {}

    std::vector<Difference> Differences() {
        CompareEnds();
        CompareMessages();
        CompareOperations();
        CompareRules();
        return std::move(mDifferences);
    }

  private:
    void Add(std::string what, std::string text) { mDifferences.push_back({std::move(what), std::move(text)}); }

    void CompareEnds() {
        if (mRun.isLost) {
            Add("end", "an exception left the plug-in");
        }
        if (mRun.brokenOff != mExpected.brokenOff) {
            Add("end", "the story could not go on: " + mRun.brokenOff);
        }
        if (mRun.unhandled != mExpected.unhandled) {
            Add("stopped exceptions", std::to_string(mRun.unhandled) +
                                          " exceptions were stopped where messages enter, " + "expected " +
                                          std::to_string(mExpected.unhandled));
        }
        if (mRun.aboutAnswer != mExpected.aboutAnswer || mRun.shutdownAnswer != mExpected.shutdownAnswer) {
            Add("answers", "the messages after the last step were answered with " + InWords(mRun.aboutAnswer) +
                               " and " + InWords(mRun.shutdownAnswer) + ", expected " + InWords(mExpected.aboutAnswer) +
                               " and " + InWords(mExpected.shutdownAnswer));
        }
    }

    void CompareMessages() {
        const auto [at, expected] = std::mismatch(mRun.messages.begin(), mRun.messages.end(),
                                                  mExpected.messages.begin(), mExpected.messages.end());
        if (at != mRun.messages.end() || expected != mExpected.messages.end()) {
            Add("answers", "message " + std::to_string(at - mRun.messages.begin() + 1) + ": " +
                               (at == mRun.messages.end() ? "nothing" : *at) + ", expected " +
                               (expected == mExpected.messages.end() ? "nothing" : *expected));
        }
    }

    void CompareOperations() {
        std::map<std::string, std::pair<std::int64_t, std::int64_t>> counts;
        for (const auto& [operation, count] : mRun.operations) {
            counts[operation].first = count;
        }
        for (const auto& [operation, count] : mExpected.operations) {
            counts[operation].second = count;
        }
        for (const auto& [operation, count] : counts) {
            if (count.first != count.second) {
                Add("calls of " + operation, operation + " was called " + std::to_string(count.first) +
                                                 " times, expected " + std::to_string(count.second));
            }
        }
    }

    void CompareRules() {
        const auto broken = BrokenByRule(mRun);
        const auto expected = BrokenByRule(mExpected);
        std::set<std::string> rules;
        for (const auto* const each : {&broken, &expected}) {
            for (const auto& [rule, texts] : *each) {
                rules.insert(rule);
            }
        }
        for (const std::string& rule : rules) {
            CompareRule(rule, broken.contains(rule) ? broken.at(rule) : std::multiset<std::string>(),
                        expected.contains(rule) ? expected.at(rule) : std::multiset<std::string>());
        }
    }

    void CompareRule(const std::string& rule, const std::multiset<std::string>& broken,
                     const std::multiset<std::string>& expected) {
        std::vector<std::string> more;
        std::set_difference(broken.begin(), broken.end(), expected.begin(), expected.end(), std::back_inserter(more));
        std::vector<std::string> less;
        std::set_difference(expected.begin(), expected.end(), broken.begin(), broken.end(), std::back_inserter(less));
        const std::string kind = IsAboutExpectations(FindRule(rule)->rule) ? "expectation " : "rule ";
        for (const std::string& text : more) {
            Add(kind + rule + ": " + text, rule + ": " + text);
        }
        // Fewer suites that are left held are no defect, and those that the fault has left are not among them.
        if (rule == NameOf(Rule::kSuiteLeak)) {
            return;
        }
        for (const std::string& text : less) {
            Add(kind + rule + ": " + text, "expected, but not seen: " + rule + ": " + text);
        }
    }

    const SweepRun& mRun;
    const SweepRun& mExpected;
    std::vector<Difference> mDifferences;
};

// The text of a leaked suite begins with its name in quotation marks.
std::string NameIn(const std::string& text) { return text.substr(0, text.find('"', 1)); }

// What a fault has left held in the host is still held: it was judged where it came about.
SweepRun WithoutWhatWasLeft(SweepRun run, const SweepRun& before) {
    std::erase_if(run.violations, [&](const Violation& violation) {
        return violation.rule == Rule::kSuiteLeak &&
               std::any_of(before.violations.begin(), before.violations.end(), [&](const Violation& known) {
                   return known.rule == violation.rule && NameIn(known.text) == NameIn(violation.text) &&
                          known.amount >= violation.amount;
               });
    });
    return run;
}

const LastingEffect* EffectBehind(const Difference& difference, const Failures& failures) {
    for (const LastingEffect& effect : LastingEffects()) {
        for (const auto& [operation, times] : failures) {
            if (effect.Explains(operation, difference.what)) {
                return &effect;
            }
        }
    }
    return nullptr;
}

}  // namespace

std::vector<Difference> DifferencesBetween(const SweepRun& run, const SweepRun& expected) {
    return Comparison(run, expected).Differences();
}

SweepRun ExpectedBefore(const TwoRuns& faultless, const SweepRun& faulty) {
    SweepRun expected = faultless.first;
    // Intentional: the process that the PluginCore is found by stays open. A search that does not come to a library
    // that is called is followed by another one, which leaves it open once more.
    const bool isFound = faulty.operations.contains("PluginCore/GetAPIVersion");
    if (const auto processes = expected.leftByGiver.find("OpenProcess");
        !isFound && processes != expected.leftByGiver.end()) {
        ++processes->second;
    }
    return expected;
}

FaultVerdict JudgeNextInInstance(const SweepRun& again, const TwoRuns& faultless, const SweepRun& faulty) {
    FaultVerdict verdict;
    const SweepRun run = WithoutWhatWasLeft(again, faulty);
    std::set<std::string> unlikeFirst;
    for (const Difference& difference : DifferencesBetween(run, faultless.first)) {
        unlikeFirst.insert(difference.what);
    }
    std::string unexplained;
    for (const Difference& difference : DifferencesBetween(run, faultless.second)) {
        if (!unlikeFirst.contains(difference.what)) {
            ++verdict.explained
                  ["in the next run of the instance: what is done once was done now, as the fault had kept it from "
                   "being done"];
        } else if (const LastingEffect* const behind = EffectBehind(difference, faulty.failures)) {
            ++verdict.explained["in the next run of the instance: " + std::string(behind->why)];
        } else {
            unexplained += (unexplained.empty() ? "" : "; ") + difference.text;
        }
    }
    if (!unexplained.empty()) {
        verdict.findings.push_back("the next run of the same instance, without a fault, came out otherwise: " +
                                   unexplained);
    }
    return verdict;
}

}  // namespace simhost::sweep
