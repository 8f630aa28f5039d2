// The rules of the host's double, and its fault injection, without a plug-in: the suites are called as a plug-in that
// breaks a rule would call them.
#include <gtest/gtest.h>
#include <windows.h>

#include <map>
#include <stdexcept>
#include <vector>

#include "doubles/common/OwnMemory.h"
#include "doubles/host/Host.h"
#include "doubles/host/PluginReference.h"
#include "doubles/host/suites/AllSuites.h"
#include "host/ArtSuites.h"
#include "host/FontSuite.h"
#include "host/MatchingArtSuite.h"
#include "host/MdMemorySuite.h"
#include "host/MenuSuite.h"
#include "host/SPSuites.h"
#include "host/StringSuites.h"
#include "host/TextEngineSuites.h"
#include "host/TimerSuite.h"

namespace {

using simhost::BasicSuite;
using simhost::Rule;
using Rules = std::vector<Rule>;
using Texts = std::vector<std::string>;

class HostRulesTest : public testing::Test {
  protected:
    HostRulesTest() {
        simhost::Document& document = host.model.documents["a"];
        document.name = "a";
        document.frames = {{"Minion"}};
        host.model.Open("a");
    }

    template <class Suite>
    static const Suite* Acquire(const char* name, std::int32_t version) {
        const void* suite = nullptr;
        EXPECT_EQ(BasicSuite()->AcquireSuite(name, version, &suite), 0);
        return static_cast<const Suite*>(suite);
    }
    static const AIMenuSuite* Menus() { return Acquire<AIMenuSuite>("AI Menu Suite", 11); }
    static const AITimerSuite* Timers() { return Acquire<AITimerSuite>("AI Timer Suite", 5); }

    Rules BrokenRules() const {
        Rules broken;
        for (const simhost::Violation& violation : host.rules.Violations()) {
            broken.push_back(violation.rule);
        }
        return broken;
    }
    // The rules that are broken at the end, besides the suites that the test still holds.
    Rules Leftovers() {
        for (const auto& suite : host.suites.All()) {
            suite->held = 0;
        }
        host.ReportLeftovers();
        return BrokenRules();
    }

    simhost::SimulatedHost host;
};

// --- handles and arguments ------------------------------------------------------------------------------------------

TEST_F(HostRulesTest, HandleThatIsNullOrWasNeverGivenOutOrWasGivenBackIsStale) {
    const AIMenuSuite* const menus = Menus();
    void* const item = host.model.menus.items.Add({"Type Plugins1", "Text"});
    EXPECT_EQ(menus->EnableItem(static_cast<AIMenuItemHandle>(item)), 0);
    EXPECT_TRUE(BrokenRules().empty());
    host.model.menus.items.Remove(item);
    EXPECT_NE(menus->EnableItem(static_cast<AIMenuItemHandle>(item)), 0);
    EXPECT_NE(menus->EnableItem(reinterpret_cast<AIMenuItemHandle>(0x1234)), 0);
    EXPECT_NE(menus->EnableItem(nullptr), 0);
    EXPECT_EQ(BrokenRules(), (Rules{Rule::kStaleReference, Rule::kStaleReference, Rule::kStaleReference}));
}

TEST_F(HostRulesTest, RegistrationForAnotherPluginIsABadArgument) {
    AITimerHandle timer = nullptr;
    EXPECT_NE(Timers()->AddTimer(reinterpret_cast<SPPluginRef>(0x10), "Timer", 1, &timer), 0);
    EXPECT_EQ(BrokenRules(), Rules{Rule::kBadArgument});
    EXPECT_EQ(timer, nullptr);
}

TEST_F(HostRulesTest, CallOnAnotherThreadIsReported) {
    const AIMenuSuite* menus = Menus();
    const auto count = [](void* suite) -> DWORD {
        std::int32_t items = 0;
        return static_cast<DWORD>((*static_cast<const AIMenuSuite**>(suite))->CountMenuItems(&items));
    };
    const HANDLE thread = CreateThread(nullptr, 0, count, &menus, 0, nullptr);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
    EXPECT_EQ(BrokenRules(), Rules{Rule::kWrongThread});
}

// --- suites ---------------------------------------------------------------------------------------------------------

TEST_F(HostRulesTest, UseAndReleaseOfASuiteThatIsNotHeldAreReported) {
    std::int32_t items = 0;
    host.suites.Table<AIMenuSuite>("AI Menu Suite").CountMenuItems(&items);
    EXPECT_NE(BasicSuite()->ReleaseSuite("AI Menu Suite", 11), 0);
    EXPECT_EQ(BrokenRules(), (Rules{Rule::kSuiteNotHeld, Rule::kSuiteNotHeld}));
}

TEST_F(HostRulesTest, SuiteOfAnotherVersionIsRefusedAndSuiteThatIsHeldAtTheEndIsALeak) {
    const void* suite = nullptr;
    EXPECT_NE(BasicSuite()->AcquireSuite("AI Menu Suite", 10, &suite), 0);
    EXPECT_EQ(suite, nullptr);
    Menus();
    Menus();
    host.ReportLeftovers();
    ASSERT_EQ(BrokenRules(), Rules{Rule::kSuiteLeak});
    EXPECT_EQ(host.rules.Violations()[0].amount, 2);
}

TEST_F(HostRulesTest, SlotThatNobodyShouldCallIsATrap) {
    const auto trap = reinterpret_cast<std::int64_t (*)()>(host.suites.Find("AI User Suite")->slots[3]);
    EXPECT_EQ(trap(), 0x54524150);
    const auto basicTrap = reinterpret_cast<std::int64_t (*)()>(BasicSuite()->unused3[0]);
    EXPECT_NE(basicTrap(), 0);
    EXPECT_EQ(BrokenRules(), (Rules{Rule::kTrapSlot, Rule::kTrapSlot}));
}

TEST(HostRules, OneHostAfterTheOtherHasItsOwnRecordAndTheTrapsReportToTheCurrentOne) {
    for (int i = 0; i < 2; ++i) {
        simhost::SimulatedHost host;
        EXPECT_TRUE(host.operations.Calls().empty());
        reinterpret_cast<std::int64_t (*)()>(host.suites.Find("AI User Suite")->slots[0])();
        EXPECT_EQ(host.rules.Violations().size(), 1u);
        EXPECT_THROW(simhost::SimulatedHost second, std::logic_error);
    }
    EXPECT_THROW(simhost::Host(), std::logic_error);
}

TEST_F(HostRulesTest, HostComparesTokensInItsOwnWayAndSaysEqualInSeveralWays) {
    host.model.tokenAliases["a menu"] = "AI Menu";
    std::map<SPBoolean, int> answers;
    for (int i = 0; i < 10; ++i) {
        ++answers[BasicSuite()->IsEqual("a menu", "AI Menu")];
        EXPECT_EQ(BasicSuite()->IsEqual("a menu", "AI Timer"), 0);
    }
    EXPECT_GT(answers.size(), 3u);
    EXPECT_FALSE(answers.contains(0));
    EXPECT_FALSE(answers.contains(1));
}

// --- leaks ----------------------------------------------------------------------------------------------------------

TEST_F(HostRulesTest, StringsAndPathsThatAreNotGivenBackAreLeaks) {
    const auto* const strings = Acquire<AIUnicodeStringSuite>("AI Unicode String Suite", 8);
    ai::UnicodeStringData string{nullptr};
    EXPECT_EQ(strings->Initialize(string, "ab", 2, kAIUTF8CharacterEncoding), 0);
    ai::UnicodeStringData other{nullptr};
    EXPECT_EQ(strings->Copy(other, string), 0);
    EXPECT_EQ(strings->Destroy(other), 0);
    host.objects.paths.Add(u"C:/a.ai");
    EXPECT_EQ(Leftovers(), (Rules{Rule::kStringLeak, Rule::kPathLeak}));
}

TEST_F(HostRulesTest, ReferencesAreCounted) {
    const auto* const frames = Acquire<AITextFrameSuite>("AI Text Frame Suite", 4);
    const auto* const ranges = Acquire<ATE::TextRangeSuite>("ATE TextRange Suite", 1);
    const auto frame = static_cast<AIArtHandle>(host.model.ArtHandle(host.model.Named("a"), kTextFrameArt, 0));
    ATE::TextRangeRef range = nullptr;
    EXPECT_EQ(frames->GetATETextRange(frame, &range), 0);
    ranges->AddRef(range);
    ranges->Release(range);
    EXPECT_TRUE(BrokenRules().empty());
    EXPECT_EQ(Leftovers(), Rules{Rule::kReferenceLeak});
}

TEST_F(HostRulesTest, BlockThatIsNotFreedIsALeakAndWritingBehindItsEndAnOverrun) {
    const auto* const blocks = Acquire<SPBlocksSuite>("SP Blocks Suite", 2);
    void* block = nullptr;
    EXPECT_EQ(blocks->AllocateBlock(8, "first", &block), 0);
    EXPECT_EQ(blocks->AllocateBlock(8, "second", &block), 0);
    static_cast<char*>(block)[8] = 1;
    EXPECT_EQ(blocks->FreeBlock(block), 0);
    EXPECT_NE(blocks->FreeBlock(block), 0);
    EXPECT_EQ(Leftovers(), (Rules{Rule::kBlockOverrun, Rule::kBadArgument, Rule::kBlockLeak}));
}

TEST_F(HostRulesTest, HandleOfFoundArtIsALeakUntilItIsDisposed) {
    const auto* const matching = Acquire<AIMatchingArtSuite>("AI Matching Art Suite", 7);
    const auto* const memory = Acquire<AIMdMemorySuite>("AI MdMemory Suite", 3);
    AIMatchingArtSpec frames{kTextFrameArt, 0, 0};
    AIArtHandle** found[2] = {};
    std::int32_t count = 0;
    EXPECT_EQ(matching->GetMatchingArt(&frames, 1, &found[0], &count), 0);
    EXPECT_EQ(matching->GetMatchingArt(&frames, 1, &found[1], &count), 0);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(memory->MdMemoryDisposeHandle(reinterpret_cast<AIMdMemoryHandle>(found[0])), 0);
    EXPECT_EQ(Leftovers(), Rules{Rule::kHandleLeak});
}

TEST_F(HostRulesTest, TimerThatIsStillActiveIsReported) {
    AITimerHandle timer = nullptr;
    EXPECT_EQ(Timers()->AddTimer(simhost::kPluginRef, "Timer", 1, &timer), 0);
    EXPECT_EQ(Leftovers(), Rules{Rule::kTimerLeft});
}

TEST_F(HostRulesTest, FontNameThatDoesNotFitIsNotTerminated) {
    const auto* const fonts = Acquire<AIFontSuite>("AI Font Suite", 6);
    const auto key = static_cast<AIFontKey>(host.model.FontKey("abc"));
    char name[] = "......";
    EXPECT_EQ(fonts->GetPostScriptFontName(key, name, 3), 0);
    EXPECT_STREQ(name, "abc...");
    EXPECT_EQ(fonts->GetPostScriptFontName(key, name, 4), 0);
    EXPECT_STREQ(name, "abc");
}

// --- the record and fault injection ---------------------------------------------------------------------------------

TEST_F(HostRulesTest, CallsAreRecordedWithTheirArguments) {
    const AIMenuSuite* const menus = Menus();
    AIPlatformAddMenuItemDataUS data{"Type Plugins1", {host.objects.strings.Add(u"Fonts")}};
    AIMenuItemHandle item = nullptr;
    EXPECT_EQ(menus->AddMenuItem(simhost::kPluginRef, nullptr, &data, 1, &item), 0);
    EXPECT_EQ(menus->CheckItem(item, 1), 0);
    EXPECT_EQ(host.operations.Calls(),
              (Texts{"AcquireSuite('AI Menu Suite', 11)", "AddMenuItem(null, 'Type Plugins1', 'Fonts', 1)",
                     "CheckItem(0x170000000010, 1)"}));
    EXPECT_EQ(host.operations.Count("CheckItem"), 1);
    EXPECT_EQ(host.operations.Count("AI Menu Suite/CheckItem"), 1);
}

TEST_F(HostRulesTest, NthCallFailsWithoutWork) {
    const AIMenuSuite* const menus = Menus();
    host.operations.Fail("CountMenuItems", 5, 2);
    std::int32_t count = -1;
    EXPECT_EQ(menus->CountMenuItems(&count), 0);
    count = -1;
    EXPECT_EQ(menus->CountMenuItems(&count), 5);
    EXPECT_EQ(count, -1);
    EXPECT_EQ(menus->CountMenuItems(&count), 0);
}

TEST_F(HostRulesTest, CallMayFailAfterItsWorkOrSucceedWithoutIt) {
    const AIMenuSuite* const menus = Menus();
    host.operations.FailAfterWork("AI Menu Suite/CountMenuItems", 5);
    host.operations.SkipWork("AI Menu Suite/CountMenuItems", 2);
    std::int32_t count = -1;
    EXPECT_EQ(menus->CountMenuItems(&count), 5);
    EXPECT_EQ(count, 0);
    count = -1;
    EXPECT_EQ(menus->CountMenuItems(&count), 0);
    EXPECT_EQ(count, -1);
}

TEST_F(HostRulesTest, WhatAFailingCallHandsOutIsStale) {
    const auto* const frames = Acquire<AITextFrameSuite>("AI Text Frame Suite", 4);
    const auto* const ranges = Acquire<ATE::TextRangeSuite>("ATE TextRange Suite", 1);
    host.operations.FailAfterWork("GetATETextRange", 5);
    ATE::TextRangeRef range = nullptr;
    const auto frame = static_cast<AIArtHandle>(host.model.ArtHandle(host.model.Named("a"), kTextFrameArt, 0));
    EXPECT_EQ(frames->GetATETextRange(frame, &range), 5);
    EXPECT_NE(range, nullptr);
    EXPECT_TRUE(BrokenRules().empty());
    ranges->Release(range);
    EXPECT_EQ(Leftovers(), Rules{Rule::kStaleReference});
}

TEST_F(HostRulesTest, OneSuiteIsRefused) {
    host.operations.FailAlways("AcquireSuite/AI Timer Suite", 42);
    const void* suite = nullptr;
    EXPECT_EQ(BasicSuite()->AcquireSuite("AI Timer Suite", 5, &suite), 42);
    EXPECT_EQ(suite, nullptr);
    Menus();
}

TEST_F(HostRulesTest, ActionRunsInsideTheCallWithoutTheDoublesMarkOnMemory) {
    const AIMenuSuite* const menus = Menus();
    int runs = 0;
    host.operations.During("CountMenuItems", [&] {
        ++runs;
        EXPECT_FALSE(OwnMemory::IsMarked());
    });
    std::int32_t count = 0;
    menus->CountMenuItems(&count);
    menus->CountMenuItems(&count);
    EXPECT_EQ(runs, 2);
    EXPECT_FALSE(OwnMemory::IsMarked());
}

TEST_F(HostRulesTest, EventThatNoCallReachesIsKnown) {
    host.operations.Fail("CountMenuItems", 5, 2);
    host.operations.During("EnableItem", [] {});
    std::int32_t count = 0;
    Menus()->CountMenuItems(&count);
    ASSERT_EQ(host.operations.UnreachedEvents().size(), 2u);
    EXPECT_EQ(host.operations.UnreachedEvents()[0].nth, 2);
    EXPECT_EQ(host.operations.UnreachedEvents()[1].operation, "EnableItem");
}

}  // namespace
