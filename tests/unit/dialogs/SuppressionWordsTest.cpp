#include "dialogs/SuppressionWords.h"

#include <gtest/gtest.h>
#include <utf8cpp/utf8.h>
#include <windows.h>

#include "support/RecordingLogSink.h"
#include "unit/dialogs/WordFile.h"

namespace {

using Words = std::vector<std::wstring>;

TEST(SuppressionWordsTest, ListIsEmptyAtFirst) { EXPECT_TRUE(SuppressionWordList().empty()); }

TEST(SuppressionWordsTest, WordIsKeptAsUtf16) {
    AddSuppressionWord("Schrift\xC3\xA4");
    AddSuppressionWord("\xF0\x9F\x8E\xA8");
    EXPECT_EQ(SuppressionWordList(), (Words{L"Schrift\x00E4", L"\xD83C\xDFA8"}));
}

TEST(SuppressionWordsTest, WordThatIsNotUtf8IsTheLibrarysException) {
    EXPECT_THROW(AddSuppressionWord("\xFF"), utf8::exception);
    EXPECT_TRUE(SuppressionWordList().empty());
}

TEST(SuppressionWordsTest, BuiltInWordsComeInTheirOrderAndAgainWhenAskedAgain) {
    const Words builtIn = {L"Font",
                           L"font",
                           L"fuente",
                           L"police",
                           L"Caratteri",
                           L"Schriftprobleme",
                           L"Schriftart suchen",
                           L"\x30D5\x30A9\x30F3\x30C8"};
    AddDefaultSuppressionWords();
    EXPECT_EQ(SuppressionWordList(), builtIn);
    AddDefaultSuppressionWords();
    EXPECT_EQ(SuppressionWordList().size(), 16u);
}

class SuppressionFileTest : public testing::Test {
  protected:
    SuppressionFileTest() { LoadFakePluginCore(); }
    bool hasEntries = true;
};

TEST_F(SuppressionFileTest, MissingFileIsNotFound) {
    EXPECT_FALSE(ReadSuppressionFile(hasEntries));
    EXPECT_TRUE(SuppressionWordList().empty());
}

TEST_F(SuppressionFileTest, LinesAreWordsExactlyAsTheyStand) {
    const WordFile file("  padded \r\n# no comment\nSchrift\xC3\xA4\nlast without an end");
    EXPECT_TRUE(ReadSuppressionFile(hasEntries));
    EXPECT_TRUE(hasEntries);
    EXPECT_EQ(SuppressionWordList(), (Words{L"  padded ", L"# no comment", L"Schrift\x00E4", L"last without an end"}));
}

TEST_F(SuppressionFileTest, EmptyFileIsFoundAndHasNoEntries) {
    const WordFile file("");
    EXPECT_TRUE(ReadSuppressionFile(hasEntries));
    EXPECT_FALSE(hasEntries);
}

TEST_F(SuppressionFileTest, OneEmptyLineIsAnEmptyWord) {
    const WordFile file("\r\n");
    EXPECT_TRUE(ReadSuppressionFile(hasEntries));
    EXPECT_TRUE(hasEntries);
    EXPECT_EQ(SuppressionWordList(), Words{L""});
}

TEST_F(SuppressionFileTest, LineThatIsNotUtf8IsSkippedWithALogLine) {
    const WordFile file("\xFF\ngood\n");
    ClearRecordedLog();
    EXPECT_TRUE(ReadSuppressionFile(hasEntries));
    EXPECT_EQ(SuppressionWordList(), Words{L"good"});
    EXPECT_EQ(CountRecorded("...ignoring a line of DialogSuppression.tmp: Invalid UTF-8"), 1);
}

TEST_F(SuppressionFileTest, UnusablePluginCoreHasNoFile) {
    const WordFile file("word\n");
    ThePluginCore().calls.FailAlways("GetAPIVersion", 1);
    EXPECT_FALSE(ReadSuppressionFile(hasEntries));
    EXPECT_TRUE(hasEntries);
    EXPECT_TRUE(SuppressionWordList().empty());
}

TEST_F(SuppressionFileTest, FolderOfThatNameIsNoFile) {
    ASSERT_TRUE(CreateDirectoryA(WordFile::Path().c_str(), nullptr));
    EXPECT_FALSE(ReadSuppressionFile(hasEntries));
    RemoveDirectoryA(WordFile::Path().c_str());
}

}  // namespace
