#include "support/Log.h"

#include <gmock/gmock.h>
#include <stdio.h>

#include <cstdarg>
#include <cstring>

#include "doubles/common/ImportPatch.h"
#include "support/log/RecordingLogSink.h"

namespace {

class LogTest : public testing::Test {
  protected:
    LogTest() { ClearRecordedLog(); }
};

using LogLineTest = LogTest;

TEST_F(LogTest, BufferHolds8192Bytes) { EXPECT_EQ(kLogBufferSize, 8192u); }

TEST_F(LogTest, LevelsAreOneForEntryMinusOneForExitAndZero) {
    EXPECT_EQ(kLogEntry, 1);
    EXPECT_EQ(kLogExit, -1);
    EXPECT_EQ(kLogNote, 0);
}

TEST_F(LogTest, FormatsItsArgumentsAndHandsTheLevelOn) {
    LogMessage(kLogEntry, "Entering %s(%08x, '%s')", "Operation", 0xBEEFu, "text");
    LogMessage(kLogNote, "100%% of %d", -3);
    LogMessage(kLogExit, "%s returning %d", "Operation", 0x15000000);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{{1, "Entering Operation(0000beef, 'text')"},
                                                        {0, "100% of -3"},
                                                        {-1, "Operation returning 352321536"}}));
}

TEST_F(LogTest, HandsAnyLevelOnUnexamined) {
    LogMessage(-2147483647 - 1, "a");
    LogMessage(77, "b");
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{{-2147483647 - 1, "a"}, {77, "b"}}));
}

TEST_F(LogTest, LineFeedsOfTheMessageStayAndNoneIsAdded) {
    LogMessage(kLogNote, "%s", "two\nlines\n");
    LogMessage(kLogNote, "%s", "");
    EXPECT_EQ(RecordedTexts(), (std::vector<std::string>{"two\nlines\n", ""}));
}

TEST_F(LogTest, MessageOf8191CharactersIsKeptWhole) {
    const std::string text = std::string(8190, 'x') + "y";
    LogMessage(kLogNote, "%s", text.c_str());
    EXPECT_EQ(RecordedTexts(), std::vector{text});
}

TEST_F(LogTest, MessageOfMoreThan8191CharactersIsCut) {
    const std::string text(8191, 'x');
    for (const char* more : {"y", "yz", "a much longer rest"}) {
        ClearRecordedLog();
        LogMessage(kLogNote, "%s%s", text.c_str(), more);
        EXPECT_EQ(RecordedTexts(), std::vector{text}) << more;
    }
    ClearRecordedLog();
    LogMessage(kLogNote, "%s", std::string(1000000, 'x').c_str());
    EXPECT_EQ(RecordedTexts(), std::vector{text});
}

// What the formatter was handed: the real one writes into a buffer that ends in guard bytes, and the outcome goes back.
struct Formatter {
    std::size_t bufferSize = 0;
    std::size_t count = 0;
    bool guardIsWhole = false;
};
Formatter sFormatter;

int FormatWithGuard(char* buffer, std::size_t size, std::size_t count, const char* format, va_list arguments) {
    constexpr std::size_t kGuardSize = 64;
    std::string guarded(size + kGuardSize, '\xA5');
    const int result = _vsnprintf(guarded.data(), count == _TRUNCATE ? size - 1 : count, format, arguments);
    if (result < 0 || static_cast<std::size_t>(result) >= size) {
        guarded[size - 1] = '\0';
    } else {
        guarded[static_cast<std::size_t>(result)] = '\0';
    }
    sFormatter = {size, count, guarded.substr(size) == std::string(kGuardSize, '\xA5')};
    std::memcpy(buffer, guarded.data(), size);
    return result;
}

TEST_F(LogTest, NothingPastTheBufferIsTouched) {
    {
        const ImportPatch patch("_vsnprintf_s", AsReplacement(FormatWithGuard));
        LogMessage(kLogNote, "%s", std::string(20000, 'x').c_str());
    }
    EXPECT_EQ(sFormatter.bufferSize, 8192u);
    EXPECT_EQ(sFormatter.count, _TRUNCATE);  // cut and terminated, never an invalid parameter
    EXPECT_TRUE(sFormatter.guardIsWhole);
    EXPECT_EQ(RecordedTexts(), std::vector{std::string(8191, 'x')});
}

TEST_F(LogLineTest, EmptyFormatYieldsASingleLineFeed) { EXPECT_EQ(LogLine("%s", ""), 1); }

TEST_F(LogLineTest, CountsTheLineFeedThatItAdds) {
    EXPECT_EQ(LogLine("%s=%d", "abc", 10), 7);
    EXPECT_EQ(LogLine("%s", "a\nb"), 4);
}

TEST_F(LogLineTest, TextThatEndsInALineFeedKeepsItsLength) {
    EXPECT_EQ(LogLine("%s\n", "abc"), 4);
    EXPECT_EQ(LogLine("\n"), 1);
}

TEST_F(LogLineTest, TextOf8189CharactersStillGetsItsLineFeed) {
    EXPECT_EQ(LogLine("%s", std::string(8188, 'x').c_str()), 8189);
    EXPECT_EQ(LogLine("%s", std::string(8189, 'x').c_str()), 8190);
}

TEST_F(LogLineTest, TextOf8190CharactersOrMoreGetsNothing) {
    EXPECT_EQ(LogLine("%s", std::string(8190, 'x').c_str()), 8190);
    EXPECT_EQ(LogLine("%s", std::string(8191, 'x').c_str()), 8191);
    EXPECT_EQ(LogLine("%s", std::string(8192, 'x').c_str()), 8191);
    EXPECT_EQ(LogLine("%s", std::string(100000, 'x').c_str()), 8191);
}

TEST_F(LogLineTest, TextGoesNowhere) {
    LogLine("%s", "abc");
    EXPECT_TRUE(RecordedLog().empty());
}

TEST(Low32Test, IsTheLowerHalfOfAnAddress) {
    EXPECT_EQ(Low32(reinterpret_cast<const void*>(0x1234567890ABCDEFull)), 0x90ABCDEFu);
    EXPECT_EQ(Low32(nullptr), 0u);
}

}  // namespace
