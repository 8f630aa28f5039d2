#include "simhost/checks/CallAlignment.h"

#include <algorithm>
#include <cstddef>

#include "simhost/checks/CallDifference.h"
#include "simhost/report/ValueDifference.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

// Comparing each call with each takes time and memory; so many calls are compared in order.
constexpr std::size_t kMostToAlign = 400;

// How far two calls are from each other; calls of different functions are never the same.
int CostOf(const PluginCoreCall& expected, const PluginCoreCall& call) {
    return IsCall(expected, call) ? 0 : expected.entry == call.entry ? 1 : 4;
}

constexpr int kCostOfOneMore = 2;

class Alignment {
  public:
    Alignment(const std::vector<PluginCoreCall>& expected, const std::vector<PluginCoreCall>& calls)
        : mExpected(expected), mCalls(calls), mCosts((expected.size() + 1) * (calls.size() + 1)) {
        for (std::size_t i = expected.size() + 1; i-- > 0;) {
            for (std::size_t j = calls.size() + 1; j-- > 0;) {
                Cost(i, j) = CheapestFrom(i, j);
            }
        }
    }

    // Calls `tell(expected, call)` in order; one of them is null where there is nothing to compare.
    template <class Tell>
    void Walk(const Tell& tell) {
        std::size_t i = 0;
        std::size_t j = 0;
        while (i < mExpected.size() || j < mCalls.size()) {
            if (i < mExpected.size() && j < mCalls.size() &&
                Cost(i, j) == Cost(i + 1, j + 1) + CostOf(mExpected[i], mCalls[j])) {
                tell(&mExpected[i++], &mCalls[j++]);
            } else if (i < mExpected.size() && Cost(i, j) == Cost(i + 1, j) + kCostOfOneMore) {
                tell(&mExpected[i++], nullptr);
            } else {
                tell(nullptr, &mCalls[j++]);
            }
        }
    }

  private:
    int& Cost(std::size_t i, std::size_t j) { return mCosts[i * (mCalls.size() + 1) + j]; }

    int CheapestFrom(std::size_t i, std::size_t j) {
        if (i == mExpected.size() || j == mCalls.size()) {
            return static_cast<int>(mExpected.size() - i + mCalls.size() - j) * kCostOfOneMore;
        }
        return std::min({Cost(i + 1, j + 1) + CostOf(mExpected[i], mCalls[j]), Cost(i + 1, j) + kCostOfOneMore,
                         Cost(i, j + 1) + kCostOfOneMore});
    }

    const std::vector<PluginCoreCall>& mExpected;
    const std::vector<PluginCoreCall>& mCalls;
    std::vector<int> mCosts;
};

class Teller {
  public:
    void Tell(const PluginCoreCall* expected, const PluginCoreCall* call) {
        mNumber += call == nullptr ? 0 : 1;
        if (call == nullptr) {
            mLines.push_back("expected " + expected->entry + ", but it did not come");
        } else if (expected == nullptr) {
            mLines.push_back("call " + std::to_string(mNumber) + ": " + call->entry + " came, but was not expected");
        } else if (!IsCall(*expected, *call)) {
            TellArguments(*expected, *call);
        }
    }

    std::vector<std::string> Take() { return std::move(mLines); }

  private:
    void TellArguments(const PluginCoreCall& expected, const PluginCoreCall& call) {
        const std::string number = "call " + std::to_string(mNumber) + ": ";
        if (expected.entry != call.entry) {
            mLines.push_back(number + "expected " + expected.entry + ", but came " + call.entry);
            return;
        }
        for (const auto& [name, value] : expected.arguments.items()) {
            const Json came = call.arguments.value(name, Json("no such argument"));
            AddDifference(number + call.entry + ", " + name + ":", value, came);
        }
        for (const auto& [name, value] : call.arguments.items()) {
            if (!expected.arguments.contains(name) && !name.ends_with("_hex")) {
                AddDifference(number + call.entry + ", " + name + ":", Json("no such argument"), value);
            }
        }
    }

    void AddDifference(const std::string& title, const Json& expected, const Json& came) {
        const std::vector<std::string> lines = LinesOfDifference(expected, came);
        if (!lines.empty()) {
            mLines.push_back(title);
        }
        for (const std::string& line : lines) {
            mLines.push_back("  " + line);
        }
    }

    std::vector<std::string> mLines;
    std::size_t mNumber = 0;
};

}  // namespace

std::vector<std::string> LinesOfCallDifference(const Json& expected, const std::vector<PluginCoreCall>& calls) {
    const std::vector<PluginCoreCall> expectedCalls = ExpectedCalls(expected);
    Teller teller;
    if (expectedCalls.size() > kMostToAlign || calls.size() > kMostToAlign) {
        for (std::size_t i = 0; i < std::max(expectedCalls.size(), calls.size()); ++i) {
            teller.Tell(i < expectedCalls.size() ? &expectedCalls[i] : nullptr, i < calls.size() ? &calls[i] : nullptr);
        }
    } else {
        Alignment(expectedCalls, calls).Walk([&](const PluginCoreCall* e, const PluginCoreCall* c) {
            teller.Tell(e, c);
        });
    }
    return teller.Take();
}

}  // namespace simhost
