#include "diagnostic/RepeatedCalls.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(RepeatedCalls, KnowsACallAndItsAnswer) {
    RepeatedCalls calls;
    EXPECT_FALSE(calls.IsRepetition("-> IdleEvent()"));
    calls.Remember("-> IdleEvent()", "answered 0");
    EXPECT_TRUE(calls.IsRepetition("-> IdleEvent()"));
    EXPECT_TRUE(calls.WasAnswered("-> IdleEvent()", "answered 0"));
    EXPECT_FALSE(calls.WasAnswered("-> IdleEvent()", "answered 1"));
    EXPECT_FALSE(calls.IsRepetition("-> ProcessPanelMessages(1)"));
    EXPECT_FALSE(calls.WasAnswered("-> ProcessPanelMessages(1)", "answered 0"));
}

TEST(RepeatedCalls, AnotherAnswerTakesThePlaceOfTheFirst) {
    RepeatedCalls calls;
    calls.Remember("-> IdleEvent()", "answered 0");
    calls.Remember("-> IdleEvent()", "answered 1");
    EXPECT_TRUE(calls.WasAnswered("-> IdleEvent()", "answered 1"));
    EXPECT_FALSE(calls.WasAnswered("-> IdleEvent()", "answered 0"));
}

TEST(RepeatedCalls, ForgetsAll) {
    RepeatedCalls calls;
    calls.Remember("-> IdleEvent()", "answered 0");
    calls.Forget();
    EXPECT_FALSE(calls.IsRepetition("-> IdleEvent()"));
}

TEST(RepeatedCalls, MoreThanItKeepsAreNoRepetitions) {
    RepeatedCalls calls;
    for (int i = 0; i < 17; ++i) {
        calls.Remember(std::to_string(i), "");
    }
    EXPECT_TRUE(calls.IsRepetition("15"));
    EXPECT_FALSE(calls.IsRepetition("16"));
    calls.Remember("15", "new");
    EXPECT_TRUE(calls.WasAnswered("15", "new"));
}

}  // namespace
