// What a refused suite explains, and what it does not.
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "doubles/host/Host.h"
#include "doubles/host/suites/AllSuites.h"
#include "doubles/host/suites/SuiteList.h"
#include "simhost/random/RefusalLedger.h"

namespace {

using namespace simhost;

constexpr const char* kStrings = "AI Unicode String Suite";
constexpr const char* kLast = "AI Document Suite";
constexpr const char* kBlocks = "SP Blocks Suite";
constexpr const char* kTimers = "AI Timer Suite";

// Does what the plug-in does with its suites, and what it must not do.
class RefusalLedgerTest : public ::testing::Test {
  protected:
    RefusalLedgerTest() {
        mHost->operations.withinEachCall = [this](const std::string& moment) { mLedger.Within(moment); };
    }

    // As a message: asks for the suites of the table up to the one that is refused; nobody: all.
    void AcquireAll(const std::string& refused = "") {
        Refuse(refused);
        mLedger.BeginMessage();
        for (const SuiteRow& row : HeldSuites()) {
            if (Acquire(row) != 0) {
                break;
            }
        }
        mLedger.EndMessage(nullptr, nullptr);
    }

    void ReleaseAll() {
        for (const SuiteRow& row : HeldSuites()) {
            BasicSuite()->ReleaseSuite(row.name, row.version);
        }
    }

    // As a message that ends with another block than it began with.
    void AskFor(const char* name, bool isRefused, void* blockBefore = nullptr, void* blockAfter = nullptr) {
        Refuse(isRefused ? name : "");
        mLedger.BeginMessage();
        for (const SuiteRow& row : AllSuites()) {
            if (std::string(row.name) == name && Acquire(row) == 0) {
                BasicSuite()->ReleaseSuite(row.name, row.version);
            }
        }
        mLedger.EndMessage(blockBefore, blockAfter);
    }

    // What is left in the evening: amount by rule.
    std::int64_t Left(Rule rule) {
        mHost->ReportLeftovers();
        std::int64_t amount = 0;
        for (const Violation& violation : mHost->rules.Violations()) {
            amount += violation.rule == rule ? violation.amount : 0;
        }
        return amount;
    }

    std::unique_ptr<SimulatedHost> mHost = std::make_unique<SimulatedHost>();
    MessageCounts mCounts;
    RefusalLedger mLedger{mCounts};

  private:
    void Refuse(const std::string& suite) {
        if (suite.empty()) {
            mHost->operations.BeginStep({});
            return;
        }
        ScriptedEvent refusal;
        refusal.operation = "SP Basic Suite/AcquireSuite/" + suite;
        refusal.nth = kEveryCall;
        refusal.code = 77;
        refusal.action = [this, suite] { mLedger.Refused(suite); };
        mHost->operations.BeginStep({refusal});
    }

    static SPErr Acquire(const SuiteRow& row) {
        const void* table = nullptr;
        return BasicSuite()->AcquireSuite(row.name, row.version, &table);
    }
};

TEST_F(RefusalLedgerTest, NothingIsExplainedWithoutARefusal) {
    AcquireAll();
    EXPECT_FALSE(mLedger.IsPartial());
    EXPECT_EQ(Left(Rule::kSuiteLeak), 98);
}

TEST_F(RefusalLedgerTest, WhatWasAcquiredBeforeARefusalStays) {
    AcquireAll(kLast);
    AcquireAll("ATE Font Suite");
    EXPECT_TRUE(mLedger.IsPartial());
    EXPECT_EQ(Left(Rule::kSuiteLeak), 0);
}

TEST_F(RefusalLedgerTest, TableThatIsCompleteAtLastIsGivenBackOnce) {
    AcquireAll(kLast);
    AcquireAll();
    EXPECT_FALSE(mLedger.IsPartial());
    ReleaseAll();
    EXPECT_EQ(Left(Rule::kSuiteLeak), 0);
}

TEST_F(RefusalLedgerTest, TableThatIsNotGivenBackIsMissed) {
    AcquireAll(kLast);
    AcquireAll();
    EXPECT_EQ(Left(Rule::kSuiteLeak), 98);
}

TEST_F(RefusalLedgerTest, OneReleaseTooManyIsFound) {
    AcquireAll(kLast);
    AcquireAll();
    ReleaseAll();
    BasicSuite()->ReleaseSuite(kStrings, 8);
    EXPECT_EQ(Left(Rule::kSuiteNotHeld), 1);
    EXPECT_EQ(Left(Rule::kSuiteLeak), 0);
}

TEST_F(RefusalLedgerTest, RefusalBySomebodyElseIsNotExplainedAndTheNextOneIs) {
    mHost->operations.inject = [](const std::string& name) {
        return name == "SP Basic Suite/AcquireSuite/ATE Font Suite" ? std::optional(CallFate{77, false}) : std::nullopt;
    };
    AcquireAll();
    mHost->operations.inject = nullptr;
    const std::int64_t unexplained = mHost->suites.Find(HeldSuites()[0].name)->held;
    EXPECT_EQ(unexplained, 1);
    AcquireAll(kLast);
    EXPECT_TRUE(mLedger.IsPartial());
    AcquireAll();
    ReleaseAll();
    EXPECT_EQ(Left(Rule::kSuiteLeak), 61);
}

TEST_F(RefusalLedgerTest, RefusalOutsideOfTheTableExplainsNoSuite) {
    AcquireAll();
    AskFor(kBlocks, true);
    AskFor(kTimers, true);
    EXPECT_FALSE(mLedger.IsPartial());
    EXPECT_EQ(Left(Rule::kSuiteLeak), 98);
}

TEST_F(RefusalLedgerTest, StringsStayWhileTheirSuiteIsMissing) {
    AcquireAll(kStrings);
    mHost->objects.strings.Add(u"left");
    AskFor(kTimers, false);
    EXPECT_EQ(Left(Rule::kStringLeak), 0);
}

TEST_F(RefusalLedgerTest, StringsAreMissedWhileTheirSuiteIsThere) {
    AcquireAll(kLast);
    // The suite of the first attempt is still there.
    AcquireAll("ATE Font Suite");
    mHost->objects.strings.Add(u"left");
    AskFor(kTimers, false);
    EXPECT_EQ(Left(Rule::kStringLeak), 1);
}

TEST_F(RefusalLedgerTest, StringsAreMissedAfterTheWholeTableWasThere) {
    AcquireAll(kStrings);
    AcquireAll();
    mHost->objects.strings.Add(u"left");
    AskFor(kTimers, false);
    EXPECT_EQ(Left(Rule::kStringLeak), 1);
}

TEST_F(RefusalLedgerTest, BlockStaysWhenItsSuiteIsRefusedAtTheShutDown) {
    void* const block = mHost->objects.AllocateBlock(8, "globals");
    AskFor(kBlocks, true, block, nullptr);
    EXPECT_EQ(Left(Rule::kBlockLeak), 0);
}

TEST_F(RefusalLedgerTest, OtherBlockIsMissed) {
    void* const block = mHost->objects.AllocateBlock(8, "globals");
    mHost->objects.AllocateBlock(8, "another");
    AskFor(kBlocks, true, block, nullptr);
    EXPECT_EQ(Left(Rule::kBlockLeak), 1);
}

TEST_F(RefusalLedgerTest, BlockIsMissedWithoutARefusalOrAShutDown) {
    void* const block = mHost->objects.AllocateBlock(8, "globals");
    AskFor(kBlocks, true, block, block);
    AskFor(kTimers, true, block, nullptr);
    AskFor(kBlocks, false, block, nullptr);
    EXPECT_EQ(Left(Rule::kBlockLeak), 1);
}

TEST_F(RefusalLedgerTest, TimerStaysWhenItsSuiteIsRefusedAtTheShutDown) {
    int block = 0;
    mHost->model.timers.Add({"timer", 1, 1});
    AskFor(kTimers, true, &block, nullptr);
    EXPECT_EQ(Left(Rule::kTimerLeft), 0);
}

TEST_F(RefusalLedgerTest, TimerIsMissedWithoutARefusalOrAShutDown) {
    int block = 0;
    mHost->model.timers.Add({"timer", 1, 1});
    AskFor(kTimers, true, &block, &block);
    AskFor(kBlocks, true, &block, nullptr);
    EXPECT_EQ(Left(Rule::kTimerLeft), 1);
}

}  // namespace
