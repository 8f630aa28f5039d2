#include "dialogs/SuppressionWordLines.h"

#include <gtest/gtest.h>

#include "support/log/RecordingLogSink.h"

namespace {

using Words = std::vector<std::wstring>;

class SuppressionWordLinesTest : public testing::Test {
  protected:
    bool Append(const std::string& text) { return AppendSuppressionWords(text, words); }
    Words words;
};

TEST_F(SuppressionWordLinesTest, LinesComeAsTheyStandBehindTheWordsThatAreThere) {
    words = {L"first"};
    EXPECT_TRUE(Append(" padded\t\nSchrift\xC3\xA4\r\nlast"));
    EXPECT_EQ(words, (Words{L"first", L" padded\t", L"Schrift\x00E4\r", L"last"}));
}

TEST_F(SuppressionWordLinesTest, NoLineIsNoEntry) {
    EXPECT_FALSE(Append(""));
    EXPECT_TRUE(words.empty());
}

TEST_F(SuppressionWordLinesTest, EmptyLineIsAnEmptyWord) {
    EXPECT_TRUE(Append("\n"));
    EXPECT_EQ(words, Words{L""});
}

TEST_F(SuppressionWordLinesTest, NulIsPartOfItsWord) {
    EXPECT_TRUE(Append(std::string("a\0b\n", 4)));
    EXPECT_EQ(words, Words{std::wstring(L"a\0b", 3)});
}

TEST_F(SuppressionWordLinesTest, LineThatIsNotUtf8IsLeftOutWithALogLine) {
    ClearRecordedLog();
    EXPECT_TRUE(Append("\xFF\ngood\n\xE3\x83"));
    EXPECT_EQ(words, Words{L"good"});
    EXPECT_EQ(CountRecorded("...ignoring a line of DialogSuppression.tmp: Invalid UTF-8"), 1);
    EXPECT_EQ(CountRecorded("...ignoring a line of DialogSuppression.tmp: Not enough space"), 1);
}

}  // namespace
