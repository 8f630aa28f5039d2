#include "diagnostic/LogNesting.h"

#include <gtest/gtest.h>

#include <string>

namespace {

// A stack address: the greater, the further up.
constexpr std::uintptr_t kHost = 9000;
constexpr std::uintptr_t kOuter = 8000;
constexpr std::uintptr_t kMiddle = 7000;
constexpr std::uintptr_t kInner = 6000;
constexpr std::uintptr_t kDeepest = 5000;

class LogNestingTest : public testing::Test {
  protected:
    // The place in the code is the operation's own.
    std::size_t Enter(const std::string& operation, std::uintptr_t stack) {
        return nesting.Entry("Entering " + operation + "()", {stack, HashOf(operation)});
    }
    std::size_t Exit(const std::string& operation, std::uintptr_t stack) {
        return nesting.Exit("Exiting " + operation, {stack, 0});
    }
    std::size_t Note(std::uintptr_t stack) { return nesting.Note({stack, 0}); }

    LogNesting nesting;
};

TEST_F(LogNestingTest, EntriesIndentAndExitsGoBack) {
    EXPECT_EQ(Enter("A", kOuter), 0u);
    EXPECT_EQ(Note(kOuter), 1u);
    EXPECT_EQ(Enter("B", kMiddle), 1u);
    EXPECT_EQ(Note(kInner), 2u);
    EXPECT_EQ(Exit("B", kMiddle), 1u);
    EXPECT_EQ(Note(kOuter), 1u);
    EXPECT_EQ(Exit("A", kOuter), 0u);
    EXPECT_EQ(Note(kHost), 0u);
}

TEST_F(LogNestingTest, ExceptionThroughSeveralOperationsIsSeenAtTheNextLineOfItsCatcher) {
    Enter("A", kOuter);
    Enter("B", kMiddle);
    Enter("C", kInner);
    Enter("D", kDeepest);
    EXPECT_EQ(Note(kOuter), 1u);
    EXPECT_EQ(Exit("A", kOuter), 0u);
}

TEST_F(LogNestingTest, LineFromFurtherUpThanTheOutermostOperationShowsThatItHasEnded) {
    Enter("A", kOuter);
    EXPECT_EQ(Note(kHost), 0u);
}

TEST_F(LogNestingTest, ExitOfTheCatcherIsEnough) {
    Enter("A", kOuter);
    Enter("B", kMiddle);
    Enter("C", kInner);
    EXPECT_EQ(Exit("A", kOuter), 0u);
    EXPECT_EQ(Note(kHost), 0u);
}

TEST_F(LogNestingTest, EntryFromFurtherUpShowsWhatHasEnded) {
    Enter("A", kOuter);
    Enter("B", kInner);
    EXPECT_EQ(Enter("C", kMiddle), 1u);
    EXPECT_EQ(Note(kMiddle), 2u);
}

TEST_F(LogNestingTest, OperationThatTheCompilerHasPutIntoItsCallerIsWithinIt) {
    Enter("A", kOuter);
    EXPECT_EQ(Enter("B", kOuter), 1u);
    EXPECT_EQ(Note(kOuter), 2u);
    EXPECT_EQ(Exit("B", kOuter), 1u);
    EXPECT_EQ(Exit("A", kOuter), 0u);
}

TEST_F(LogNestingTest, SameOperationBegunAgainAtTheSamePlaceHasLostItsExit) {
    Enter("A", kOuter);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(Enter("B", kMiddle), 1u);
        EXPECT_EQ(Enter("C", kMiddle), 2u);
    }
    EXPECT_EQ(Exit("B", kMiddle), 1u);
    EXPECT_EQ(Exit("A", kOuter), 0u);
}

TEST_F(LogNestingTest, OperationWithinItselfIsNoRepetition) {
    EXPECT_EQ(Enter("A", kOuter), 0u);
    EXPECT_EQ(Enter("A", kMiddle), 1u);
    EXPECT_EQ(Exit("A", kMiddle), 1u);
    EXPECT_EQ(Exit("A", kOuter), 0u);
}

TEST_F(LogNestingTest, ExitFromAHelperFurtherDownEndsItsOperation) {
    Enter("A", kOuter);
    Enter("B", kMiddle);
    EXPECT_EQ(Exit("B", kDeepest), 1u);
    EXPECT_EQ(Exit("A", kMiddle), 0u);
}

TEST_F(LogNestingTest, ExitAsTheLastCallOfAFrameThatIsGoneEndsItsOperationAlone) {
    Enter("A", kOuter);
    Enter("B", kMiddle);
    EXPECT_EQ(Exit("B", kOuter), 1u);
    EXPECT_EQ(Note(kOuter), 1u);
    EXPECT_EQ(Exit("A", kHost), 0u);
}

TEST_F(LogNestingTest, ExitThatHasNoEntryEndsNothing) {
    EXPECT_EQ(Exit("A", kOuter), 0u);
    Enter("B", kOuter);
    EXPECT_EQ(Exit("A", kMiddle), 1u);
    EXPECT_EQ(Note(kMiddle), 1u);
}

TEST_F(LogNestingTest, ExitThatHasNoEntryShowsWhatHasEnded) {
    Enter("A", kOuter);
    Enter("B", kMiddle);
    Enter("C", kInner);
    EXPECT_EQ(Exit("Unknown", kOuter), 1u);
}

TEST_F(LogNestingTest, MessageWithinAMessageIsIndented) {
    EXPECT_EQ(Enter("PluginMain", kOuter), 0u);
    EXPECT_EQ(Enter("A", kMiddle), 1u);
    EXPECT_EQ(Enter("PluginMain", kDeepest), 2u);
    EXPECT_EQ(Exit("PluginMain", kDeepest), 2u);
    EXPECT_EQ(Exit("A", kMiddle), 1u);
    EXPECT_EQ(Exit("PluginMain", kOuter), 0u);
}

TEST_F(LogNestingTest, MessageFromFurtherDownThanWhatATickHasLeftBeginsAtTheFirstColumn) {
    Enter("LeftByATick", kOuter);
    Enter("LeftAsWell", kMiddle);
    EXPECT_EQ(Enter("PluginMain", kDeepest), 0u);
    EXPECT_EQ(Exit("PluginMain", kDeepest), 0u);
}

TEST_F(LogNestingTest, NextMessageIsAtTheFirstColumnEvenWhenTheLastOneNeverEnded) {
    Enter("PluginMain", kOuter);
    Enter("A", kMiddle);
    EXPECT_EQ(Enter("PluginMain", kOuter), 0u);
    EXPECT_EQ(Note(kMiddle), 1u);
}

TEST_F(LogNestingTest, HookAndCallbackFromFurtherDownAreWithinTheCall) {
    Enter("A", kOuter);
    EXPECT_EQ(nesting.Entry("-> GetMenus(\"\")", {kMiddle, 1}), 1u);
    EXPECT_EQ(Enter("AddIllustratorMenu", kDeepest), 2u);
    EXPECT_EQ(Exit("AddIllustratorMenu", kDeepest), 2u);
    EXPECT_EQ(nesting.Exit("<- GetMenus took 1 ms", {kDeepest, 0}), 1u);
    EXPECT_EQ(Exit("A", kOuter), 0u);
}

TEST_F(LogNestingTest, DeeperThanIsKeptIsStillCounted) {
    for (std::size_t i = 0; i < 150; ++i) {
        EXPECT_EQ(Enter("Deep" + std::to_string(i), kOuter - i), i);
    }
    for (std::size_t i = 150; i-- > 0;) {
        EXPECT_EQ(Exit("Deep" + std::to_string(i), kOuter - i), i);
    }
    EXPECT_EQ(Note(kHost), 0u);
}

TEST_F(LogNestingTest, WhatIsDeeperThanKeptEndsWithWhatIsKept) {
    for (std::size_t i = 0; i < 150; ++i) {
        Enter("Deep" + std::to_string(i), kOuter - i);
    }
    EXPECT_EQ(Note(kOuter), 1u);
}

TEST(OperationOf, IsTheNameInEachKindOfLine) {
    EXPECT_EQ(OperationOf("Entering PluginMain('SP Interface', 'Startup', ...)"), "PluginMain");
    EXPECT_EQ(OperationOf("PluginMain('SP Interface', 'Startup', ...) returning 0"), "PluginMain");
    EXPECT_EQ(OperationOf("Entering AddTimers "), "AddTimers");
    EXPECT_EQ(OperationOf("Exiting AddTimers "), "AddTimers");
    EXPECT_EQ(OperationOf("Entering first call to PCILoader::GetSharedInstance()"), "PCILoader::GetSharedInstance");
    EXPECT_EQ(OperationOf("Exiting first call to PCILoader::GetSharedInstance(); sSharedInstance=0x0"),
              "PCILoader::GetSharedInstance");
    EXPECT_EQ(OperationOf("Error thrown in GoCheckFileFormat()"), "GoCheckFileFormat");
    EXPECT_EQ(OperationOf("-> IdleEvent()"), "IdleEvent");
    EXPECT_EQ(OperationOf("<- IdleEvent took 0.1 ms"), "IdleEvent");
    EXPECT_EQ(OperationOf(""), "");
}

TEST(IsEntryOfMessage, KnowsTheLineOfPluginMain) {
    EXPECT_TRUE(IsEntryOfMessage("Entering PluginMain('AI Menu', 'AI Go', ...)"));
    EXPECT_FALSE(IsEntryOfMessage("Entering PluginMainly()"));
    EXPECT_FALSE(IsEntryOfMessage("Entering HandleMessage"));
}

}  // namespace
