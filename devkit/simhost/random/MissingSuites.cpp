#include "simhost/random/MissingSuites.h"

#include <climits>

#include "doubles/host/suites/SuiteList.h"

namespace simhost {

namespace {

// Asked for in the middle of a day. The first one most of all, the last two rather at a day's ends.
constexpr const char* kMomentary[] = {"AI Menu Suite",  "AI Menu Suite",     "AI File Format Suite",
                                      "AI Timer Suite", "AI Notifier Suite", "SP Blocks Suite"};

}  // namespace

void MissingSuites::Change(const RandomMessage& next, bool isStarted) {
    if (next.beginsRun && !isStarted && (mIsToTheEnd || mDice.Chance(40))) {
        mRefusals = 1 + mDice.Below(6);
        MissHeldOnes();
    }
    if (mLedger.IsPartial() && !mHeld.empty()) {
        mRefusals -= mRefusals != 0 ? 1 : 0;
        MissHeldOnes();
    }
    if (!mIsToTheEnd && mRefusals == 0) {
        mHeld.clear();
    }
    if (mSingleFor != 0) {
        --mSingleFor;
    } else if (mDice.Chance(20)) {
        const auto all = AllSuites();
        mSingle = mDice.Chance(80) ? mDice.OneOf(kMomentary) : mDice.OneOf(all).name;
        mSingleFor = mDice.Below(20);
    } else {
        mSingle.clear();
    }
    if (!mIsToTheEnd && next.endsRun && mLedger.IsPartial()) {
        mHeld.clear();
        mSingle.clear();
    }
}

// Other ones with each message.
void MissingSuites::MissHeldOnes() {
    const auto held = HeldSuites();
    mHeld.clear();
    for (std::uint64_t count = mDice.Chance(70) ? 1 : 1 + mDice.Below(4); count != 0; --count) {
        mHeld.insert(mDice.OneOf(held).name);
    }
}

std::vector<ScriptedEvent> MissingSuites::Refusals() {
    constexpr std::int32_t kCodes[] = {-1, 5, 0x50415242, INT32_MIN, INT32_MAX};
    std::set<std::string> missing = mHeld;
    if (!mSingle.empty()) {
        missing.insert(mSingle);
    }
    std::vector<ScriptedEvent> events;
    for (const std::string& suite : missing) {
        ScriptedEvent event;
        event.operation = "SP Basic Suite/AcquireSuite/" + suite;
        event.nth = kEveryCall;
        event.code = mDice.OneOf(kCodes);
        event.action = [this, suite] { mLedger.Refused(suite); };
        events.push_back(std::move(event));
    }
    return events;
}

}  // namespace simhost
