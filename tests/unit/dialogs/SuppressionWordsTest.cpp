#include "dialogs/SuppressionWords.h"

#include <gtest/gtest.h>
#include <utf8cpp/utf8.h>
#include <windows.h>

#include <algorithm>

#include "plugincore/PCILoader.h"
#include "support/log/RecordingLogSink.h"
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

TEST_F(SuppressionFileTest, ByteOrderMarkIsPartOfTheFirstWord) {
    const WordFile file("\xEF\xBB\xBFmarked\n");
    EXPECT_TRUE(ReadSuppressionFile(hasEntries));
    EXPECT_EQ(SuppressionWordList(), Words{L"\xFEFFmarked"});
}

TEST_F(SuppressionFileTest, LineThatIsNotUtf8IsAnEntryButNoWord) {
    const WordFile file("\xFF\n");
    EXPECT_TRUE(ReadSuppressionFile(hasEntries));
    EXPECT_TRUE(hasEntries);
    EXPECT_TRUE(SuppressionWordList().empty());
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{0, "...ignoring a line of DialogSuppression.tmp: Invalid UTF-8"}));
}

TEST_F(SuppressionFileTest, FileThatCannotBeOpenedIsFoundAndHasNoEntries) {
    const WordFile file("word\n");
    const HANDLE lock = CreateFileA(WordFile::Path().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(lock, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(ReadSuppressionFile(hasEntries));
    EXPECT_FALSE(hasEntries);
    CloseHandle(lock);
}

TEST_F(SuppressionFileTest, FileMayBeOpenElsewhere) {
    const WordFile file("word\n");
    const HANDLE writer = CreateFileA(WordFile::Path().c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(writer, INVALID_HANDLE_VALUE);
    EXPECT_TRUE(ReadSuppressionFile(hasEntries));
    EXPECT_EQ(SuppressionWordList(), Words{L"word"});
    CloseHandle(writer);
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
    ThePluginCore().script["GetAPIVersion"].result = 1;
    EXPECT_FALSE(ReadSuppressionFile(hasEntries));
    EXPECT_TRUE(hasEntries);
    EXPECT_TRUE(SuppressionWordList().empty());
}

TEST_F(SuppressionFileTest, FolderOfThatNameIsNoFile) {
    ASSERT_TRUE(CreateDirectoryA(WordFile::Path().c_str(), nullptr));
    EXPECT_FALSE(ReadSuppressionFile(hasEntries));
    RemoveDirectoryA(WordFile::Path().c_str());
}

TEST(SuppressionFileOfAnotherPathTest, SlashesInTheLibrarysPathAreSeparatorsToo) {
    std::string path = FakePluginCorePath();
    std::replace(path.begin(), path.end(), '\\', '/');
    ASSERT_NE(PCILoader::LoadSharedInstance(path), nullptr);
    const WordFile file("word\n");
    bool hasEntries = true;
    EXPECT_TRUE(ReadSuppressionFile(hasEntries));
    EXPECT_EQ(SuppressionWordList(), Words{L"word"});
}

TEST(SuppressionFileOfAnotherPathTest, LibraryOfBareNameHasNoFile) {
    const std::string path = FakePluginCorePath();
    ASSERT_NE(PCILoader::LoadSharedInstance(path.substr(path.find_last_of("/\\") + 1)), nullptr);
    const WordFile file("word\n");
    bool hasEntries = true;
    EXPECT_FALSE(ReadSuppressionFile(hasEntries));
    EXPECT_TRUE(hasEntries);
}

}  // namespace
