#include "simhost/launch/StartInOrder.h"

#include <gtest/gtest.h>

namespace {

using simhost::ChooseIncreasing;
using Choice = std::vector<std::size_t>;

TEST(StartInOrder, OneProcessOfEachIsTakenWhenTheyIncrease) {
    EXPECT_EQ(ChooseIncreasing({{8}, {12}, {16}}), (Choice{0, 0, 0}));
}

TEST(StartInOrder, NothingIsToBeChosenForNoProgram) { EXPECT_EQ(ChooseIncreasing({}), Choice{}); }

TEST(StartInOrder, TooFewAreChosenWhenNoneIsGreater) { EXPECT_EQ(ChooseIncreasing({{20}, {12}}), (Choice{0})); }

TEST(StartInOrder, LowestOfTheFirstMakesRoomForTheSecond) {
    EXPECT_EQ(ChooseIncreasing({{900, 40}, {44, 36}}), (Choice{1, 0}));
}

TEST(StartInOrder, LowestThatWillDoIsTakenInTheMiddle) {
    EXPECT_EQ(ChooseIncreasing({{8}, {100, 12, 4}, {20, 10}}), (Choice{0, 1, 0}));
}

}  // namespace
