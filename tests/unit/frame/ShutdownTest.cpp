// The other half of frame/LifeCycle.h: what shut-down gives back, and in which order.
#include <algorithm>

#include "dialogs/SuppressionWords.h"
#include "support/ForeignExceptionGuard.h"
#include "unit/frame/LifeCycleFixture.h"

namespace {

TEST_F(LifeCycleTest, ShutdownUndoesStartupInOrder) {
    CallStartup();
    ClearRecords();
    EXPECT_EQ(CallShutdown(), 0);

    EXPECT_EQ(PluginCoreCalls().front(), "TerminatePluginCoreInterface()");
    EXPECT_EQ(sHooksRemoved, 1);
    EXPECT_EQ(host.globals, nullptr);
    EXPECT_EQ(sGlobals, nullptr);
    EXPECT_EQ(host.LiveBlocks(), 0);
    EXPECT_TRUE(host.HeldSuites().empty());
    EXPECT_EQ(host.TimerIsActive(), 0);
    ASSERT_EQ(host.calls.Calls().size(), 4u + 98u + 3u);
    EXPECT_EQ(std::vector<std::string>(host.calls.Calls().begin(), host.calls.Calls().begin() + 5),
              (std::vector<std::string>{
                  "AcquireSuite('AI Timer Suite', 5)", "GetTimerActive(" + HandleText(host.Timer()) + ")",
                  "SetTimerActive(" + HandleText(host.Timer()) + ", 0)", "ReleaseSuite('AI Timer Suite', 5)",
                  "ReleaseSuite('ATE ApplicationPaint Suite', 1)"}));
    EXPECT_EQ(std::vector<std::string>(host.calls.Calls().end() - 3, host.calls.Calls().end()),
              (std::vector<std::string>{"AcquireSuite('SP Blocks Suite', 2)", "FreeBlock()",
                                        "ReleaseSuite('SP Blocks Suite', 2)"}));
}

TEST_F(LifeCycleTest, ShutdownLogsItsEntryAtLevel0AndNoExit) {
    CallStartup();
    ClearRecords();
    CallShutdown();
    EXPECT_EQ(RecordedLog().front(), (RecordedLine{0, "Entering ShutdownPlugin"}));
    EXPECT_EQ(CountRecorded("Calling RemoveTimers from ShutdownPlugin."), 1);
    for (const std::string& line : RecordedTexts()) {
        EXPECT_EQ(line.find("Exiting ShutdownPlugin"), std::string::npos);
    }
}

TEST_F(LifeCycleTest, ShutdownTurnsSuppressionOffBeforeItRemovesTheTimers) {
    CallStartup();
    ClearRecords();
    CallShutdown();
    const std::vector<std::string> lines = RecordedTexts();
    const auto off = std::find(lines.begin(), lines.end(), "Exiting SetupIllustratorDialogSuppression(0)");
    const auto timers = std::find(lines.begin(), lines.end(), "Calling RemoveTimers from ShutdownPlugin.");
    ASSERT_NE(off, lines.end());
    ASSERT_NE(timers, lines.end());
    EXPECT_LT(off, timers);
}

TEST_F(LifeCycleTest, ShutdownReturnsThePluginCoresResult) {
    CallStartup();
    ThePluginCore().script.Fail("TerminatePluginCoreInterface", -5);
    EXPECT_EQ(CallShutdown(), -5);
    EXPECT_EQ(host.globals, nullptr);
}

TEST_F(LifeCycleTest, ShutdownThatCannotGetTheBlocksSuiteReturnsTheHostsCodeAndForgetsTheBlock) {
    CallStartup();
    ThePluginCore().script.Fail("TerminatePluginCoreInterface", -5);
    host.RefuseSuite("SP Blocks Suite", 123);
    host.ExpectBroken(Rule::kBlockLeak);
    EXPECT_EQ(CallShutdown(), 123);
    EXPECT_EQ(CountRecorded("ERROR:  throwing 123."), 1);
    EXPECT_EQ(host.globals, nullptr);
    EXPECT_EQ(sGlobals, nullptr);
}

TEST_F(LifeCycleTest, RefusedFreeingOfTheBlockIsIgnored) {
    CallStartup();
    host.calls.Fail("FreeBlock", 8);
    host.ExpectBroken(Rule::kBlockLeak);
    EXPECT_EQ(CallShutdown(), 0);
}

TEST_F(LifeCycleTest, TimerThatCannotBeStoppedDoesNotKeepTheRestFromBeingGivenBack) {
    CallStartup();
    host.RefuseSuite("AI Timer Suite", 42);
    host.ExpectBroken(Rule::kTimerLeft);
    EXPECT_EQ(CallShutdown(), 0);
    EXPECT_EQ(host.globals, nullptr);
    EXPECT_EQ(host.LiveBlocks(), 0);
    EXPECT_TRUE(host.HeldSuites().empty());
}

TEST_F(LifeCycleTest, SecondShutdownReturns0AtOnce) {
    CallStartup();
    CallShutdown();
    ClearRecords();
    EXPECT_EQ(CallShutdown(), 0);
    EXPECT_EQ(RecordedTexts(), std::vector<std::string>{"Entering ShutdownPlugin"});
    EXPECT_TRUE(host.calls.Calls().empty());
    EXPECT_TRUE(PluginCoreCalls().empty());
}

TEST_F(LifeCycleTest, ShutdownAppendsTheSuppressionWordsAgain) {
    CallStartup();
    EXPECT_EQ(SuppressionWordList().size(), 8u);
    CallShutdown();
    EXPECT_EQ(SuppressionWordList().size(), 16u);
}

TEST_F(LifeCycleTest, SuitesAreReleasedAfterTheTimer) {
    CallStartup();
    int timerLines = 0;
    host.calls.During("ReleaseSuite", [&] {
        timerLines = std::max(timerLines, CountRecorded("Calling RemoveTimers from ShutdownPlugin.") == 1 ? 1 : -1);
        EXPECT_EQ(CountRecorded("Calling RemoveTimers from ShutdownPlugin."), 1);
        EXPECT_EQ(host.TimerIsActive(), 0);
    });
    CallShutdown();
    EXPECT_EQ(timerLines, 1);
}

// What the C runtime was given back; whoever frees a block must not allocate to say so.
const void* sWatchedBlock = nullptr;
bool sWatchedBlockWasFreed = false;
void (*sRealFree)(void*) = nullptr;

void WatchFree(void* block) {
    if (block != nullptr && block == sWatchedBlock) {
        sWatchedBlockWasFreed = true;
    }
    sRealFree(block);
}

TEST_F(LifeCycleTest, ShutdownDeletesTheTextOfTheGlobalsBeforeItTurnsSuppressionOff) {
    CallStartup();
    const void* textWhenSuppressionIsOff = sWatchedBlock = sGlobals->text;
    bool wasFreedThen = false;
    ThePluginCore().script["GetSettings"].during = [&] {
        textWhenSuppressionIsOff = sGlobals->text;
        wasFreedThen = sWatchedBlockWasFreed;
    };
    const ImportPatch freePatch("free", AsReplacement(WatchFree));
    sRealFree = freePatch.Original<void (*)(void*)>();
    CallShutdown();
    EXPECT_TRUE(wasFreedThen);
    EXPECT_EQ(textWhenSuppressionIsOff, nullptr);
}

TEST_F(LifeCycleTest, PluginCoreThatThrowsAtShutdownDoesNotKeepTheRestFromBeingGivenBack) {
    for (const char* entry : {"TerminatePluginCoreInterface", "GetSettings"}) {
        sHooksRemoved = 0;
        AcquireSuites();
        CallStartup();
        ThePluginCore().script[entry].throws = doubles::Throw::kForeignException;
        SPMessageData message = host.MessageData();
        EXPECT_THROW(ShutdownPlugin(&message), ForeignException) << entry;
        ThePluginCore().script[entry].throws = doubles::Throw::kNothing;
        EXPECT_EQ(message.globals, nullptr);
        EXPECT_EQ(sGlobals, nullptr);
        EXPECT_EQ(sHooksRemoved, 1);
        EXPECT_EQ(host.LiveBlocks(), 0);
        EXPECT_TRUE(host.HeldSuites().empty());
        host.globals = nullptr;
    }
}

}  // namespace
