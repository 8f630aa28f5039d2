#include "simhost/scenario/NearestWord.h"

#include <gtest/gtest.h>

namespace {

using simhost::DidYouMean;
using simhost::NearestWord;

const std::vector<std::string> kWords = {"calls", "bus_calls", "answer", "Menu", "Ä"};

TEST(NearestWord, OneSlipInThreeLettersIsForgiven) {
    EXPECT_EQ(NearestWord("call", kWords), "calls");    // left out
    EXPECT_EQ(NearestWord("callls", kWords), "calls");  // added
    EXPECT_EQ(NearestWord("cells", kWords), "calls");   // replaced
    EXPECT_EQ(NearestWord("aclls", kWords), "calls");   // swapped
    EXPECT_EQ(NearestWord("awnser", kWords), "answer");
    EXPECT_EQ(NearestWord("coals?", kWords), "");
}

TEST(NearestWord, CaseIsNoSlip) { EXPECT_EQ(NearestWord("mENU", kWords), "Menu"); }

TEST(NearestWord, ShortWordsAreNotGuessed) {
    EXPECT_EQ(NearestWord("b", {"a"}), "");
    EXPECT_EQ(NearestWord("A", {"a"}), "a");
    EXPECT_EQ(NearestWord("", kWords), "");
}

TEST(NearestWord, TheNearestWins) { EXPECT_EQ(NearestWord("bus_call", kWords), "bus_calls"); }

TEST(NearestWord, VeryLongWordsAreNotCompared) {
    EXPECT_EQ(NearestWord(std::string(100'000, 'a'), {std::string(100'000, 'a')}), "");
}

TEST(NearestWord, AQuestionIsAskedOnlyWhenThereIsAnAnswer) {
    EXPECT_EQ(DidYouMean("call", kWords), "; did you mean \"calls\"?");
    EXPECT_EQ(DidYouMean("nothing", kWords), "");
}

}  // namespace
