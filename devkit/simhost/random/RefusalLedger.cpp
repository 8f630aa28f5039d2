#include "simhost/random/RefusalLedger.h"

#include <string_view>

#include "doubles/host/Host.h"
#include "doubles/host/suites/SuiteList.h"

namespace simhost {

namespace {

constexpr std::string_view kAsking = "SP Basic Suite/AcquireSuite/";
constexpr const char* kTimerSuite = "AI Timer Suite";
constexpr const char* kBlocksSuite = "SP Blocks Suite";

}  // namespace

void RefusalLedger::Refused(const std::string& suite) {
    mIsRefused = true;
    mRefusedNow.insert(suite);
    mCounts.Add(MessageKind::kRefusedSuite);
    if (mRefusedEver.insert(suite).second) {
        mCounts.Add(MessageKind::kMissingSuite);
    }
    // Some of the suites are also asked for by themselves. That refusal leaves nothing.
    const auto held = HeldSuites();
    if (suite != held[mAcquired].name) {
        return;
    }
    for (std::size_t i = 0; i < mAcquired; ++i) {
        ++Host().suites.Find(held[i].name)->leftByRefusals;
    }
    // Of an earlier attempt it is kept as well.
    mHasStringSuite = (mIsPartial && mHasStringSuite) || mAcquired == held.size() - 1;
    mAcquired = 0;
    mIsPartial = true;
    mCounts.Add(MessageKind::kPartialTable);
}

void RefusalLedger::Within(const std::string& moment) {
    if (!moment.starts_with(kAsking)) {
        return;
    }
    if (!mIsRefused) {
        Asked(moment.substr(kAsking.size()));
    }
    mIsRefused = false;
}

void RefusalLedger::Asked(const std::string& suite) {
    const auto held = HeldSuites();
    if (suite == held[mAcquired].name) {
        ++mAcquired;
    } else {
        // By itself, or from the beginning again, as after a refusal by somebody else.
        mAcquired = suite == held.front().name ? 1 : 0;
    }
    if (mAcquired < held.size()) {
        return;
    }
    mAcquired = 0;
    if (mIsPartial) {
        mIsPartial = false;
        mCounts.Add(MessageKind::kRecoveredTable);
    }
}

void RefusalLedger::EndMessage(void* blockBefore, const void* blockAfter) {
    if (mIsPartial && !mHasStringSuite) {
        TakeBackStrings();
    }
    const bool isShutDown = blockBefore != nullptr && blockAfter == nullptr;
    if (!isShutDown) {
        return;
    }
    if (mIsPartial) {
        mCounts.Add(MessageKind::kLostTable);
    }
    if (mRefusedNow.contains(kTimerSuite)) {
        TakeBackTimers();
    }
    if (mRefusedNow.contains(kBlocksSuite)) {
        TakeBackBlock(blockBefore);
    }
}

void RefusalLedger::TakeBackStrings() {
    auto& strings = Host().objects.strings.Objects();
    for (std::size_t i = 0; i < strings.size(); ++i) {
        mCounts.Add(MessageKind::kLeftString);
    }
    strings.clear();
}

void RefusalLedger::TakeBackTimers() {
    for (auto& [handle, timer] : Host().model.timers.Objects()) {
        if (timer.active != 0) {
            timer.active = 0;
            mCounts.Add(MessageKind::kLeftAtShutdown);
        }
    }
}

void RefusalLedger::TakeBackBlock(void* block) {
    if (Host().objects.FreeBlock(block, Host().rules)) {
        mCounts.Add(MessageKind::kLeftAtShutdown);
    }
}

}  // namespace simhost
