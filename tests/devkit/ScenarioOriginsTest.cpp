#include <gtest/gtest.h>

#include "simhost/scenario/HostileAnswers.h"
#include "simhost/scenario/Origins.h"

namespace {

using simhost::Origins;

TEST(Origins, WhatWasNeverSetWasWrittenWhereItIs) { EXPECT_EQ(Origins().Of("/a/b"), "/a/b"); }

TEST(Origins, MembersFollowWhatTheyBelongTo) {
    Origins origins;
    origins.Set("/steps", "/cases/one/steps");
    EXPECT_EQ(origins.Of("/steps/0/do"), "/cases/one/steps/0/do");
    EXPECT_EQ(origins.Of("/steps2"), "/steps2");
    origins.SetDefault("/end");
    EXPECT_EQ(origins.Of("/end/0"), std::nullopt);
}

TEST(Origins, ACopyBringsTheOriginsOfItsMembers) {
    Origins origins;
    origins.Set("/values/a/x", "/values/b");
    origins.SetCopy("/steps/0", "/values/a");
    EXPECT_EQ(origins.Of("/steps/0/y"), "/values/a/y");
    EXPECT_EQ(origins.Of("/steps/0/x/z"), "/values/b/z");
    origins.Set("/steps/0", "/elsewhere");
    EXPECT_EQ(origins.Of("/steps/0/x"), "/elsewhere/x");
}

TEST(HostileAnswers, TheSameSeedGivesTheSameAnswers) {
    EXPECT_EQ(simhost::HostileAnswers(7), simhost::HostileAnswers(7));
    EXPECT_NE(simhost::HostileAnswers(7), simhost::HostileAnswers(8));
    EXPECT_EQ(simhost::HostileAnswers(7).size(), 24U);
}

}  // namespace
