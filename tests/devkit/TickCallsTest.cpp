#include <gtest/gtest.h>

#include "simhost/checks/CallDifference.h"

namespace {

using simhost::DifferenceOfTicks;
using simhost::PluginCoreCall;
using Calls = std::vector<PluginCoreCall>;

const nlohmann::ordered_json kEach = {"IdleEvent"};

PluginCoreCall Idle() { return {"IdleEvent", nlohmann::ordered_json::object()}; }
PluginCoreCall Question() { return {"PluginIsEnabled", {{"flag", 1}, {"preset", 0}}}; }

const std::string kUnexpectedQuestion = "expected IdleEvent {}, but came PluginIsEnabled {\"flag\":1,\"preset\":0}";

TEST(TickCalls, EveryTickBringsAboutTheSame) {
    EXPECT_EQ(DifferenceOfTicks(kEach, 3, {Idle(), Idle(), Idle()}, 0), "");
    EXPECT_EQ(DifferenceOfTicks(kEach, 0, {}, 0), "");
}

TEST(TickCalls, MissingAndSuperfluousCallsAreNamed) {
    EXPECT_EQ(DifferenceOfTicks(kEach, 2, {Idle()}, 0), "tick 2: call 1: expected IdleEvent {}, but nothing came");
    EXPECT_EQ(DifferenceOfTicks(kEach, 1, {Idle(), Idle()}, 0), "after the last tick came IdleEvent {}");
    EXPECT_EQ(DifferenceOfTicks(kEach, 0, {Question()}, 0),
              "after the last tick came PluginIsEnabled {\"flag\":1,\"preset\":0}");
}

TEST(TickCalls, OneQuestionIsAllowedAtTheBeginningOfAnyTick) {
    EXPECT_EQ(DifferenceOfTicks(kEach, 2, {Question(), Idle(), Idle()}, 0), "");
    EXPECT_EQ(DifferenceOfTicks(kEach, 2, {Idle(), Question(), Idle()}, 9), "");
    EXPECT_EQ(DifferenceOfTicks(kEach, 2, {Question(), Idle(), Question(), Idle()}, 9),
              "tick 2: call 1: " + kUnexpectedQuestion);
}

TEST(TickCalls, OneMoreQuestionIsAllowedForEachTenSeconds) {
    const Calls twoQuestions = {Question(), Idle(), Question(), Idle(), Idle()};
    EXPECT_EQ(DifferenceOfTicks(kEach, 3, twoQuestions, 10), "");
    const Calls threeQuestions = {Question(), Idle(), Question(), Idle(), Question(), Idle()};
    EXPECT_EQ(DifferenceOfTicks(kEach, 3, threeQuestions, 19), "tick 3: call 1: " + kUnexpectedQuestion);
    EXPECT_EQ(DifferenceOfTicks(kEach, 3, threeQuestions, 20), "");
}

TEST(TickCalls, OneTickHasOneQuestionAtMost) {
    EXPECT_EQ(DifferenceOfTicks(kEach, 1, {Question(), Question(), Idle()}, 60),
              "tick 1: call 1: " + kUnexpectedQuestion);
}

TEST(TickCalls, AQuestionInOtherWordsIsNotAllowed) {
    const PluginCoreCall other{"PluginIsEnabled", {{"flag", 0}, {"preset", 0}}};
    EXPECT_EQ(DifferenceOfTicks(kEach, 1, {other, Idle()}, 60),
              "tick 1: call 1: expected IdleEvent {}, but came PluginIsEnabled {\"flag\":0,\"preset\":0}");
}

}  // namespace
