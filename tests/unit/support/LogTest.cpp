#include "support/Log.h"

#include <gmock/gmock.h>
#include <stdio.h>
#include <windows.h>

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

// A buffer of the log's size in front of a page that cannot be written to: a write past its end is an access violation.
class GuardedBuffer {
  public:
    GuardedBuffer() {
        mPages =
            static_cast<char*>(VirtualAlloc(nullptr, 2 * kLogBufferSize, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE));
        DWORD before = 0;
        VirtualProtect(mPages + kLogBufferSize, kLogBufferSize, PAGE_NOACCESS, &before);
    }
    GuardedBuffer(const GuardedBuffer&) = delete;
    GuardedBuffer& operator=(const GuardedBuffer&) = delete;
    ~GuardedBuffer() { VirtualFree(mPages, 0, MEM_RELEASE); }

    char* Data() const { return mPages; }

  private:
    static_assert(kLogBufferSize % 4096 == 0);  // whole pages
    char* mPages;
};

using Formatter = int (*)(char*, std::size_t, std::size_t, const char*, va_list);
Formatter sRealFormatter = nullptr;
std::size_t sFormattedCount = 0;

int FormatInGuardedBuffer(char* buffer, std::size_t size, std::size_t count, const char* format, va_list arguments) {
    const GuardedBuffer guarded;
    sFormattedCount = count;
    const int result = sRealFormatter(guarded.Data(), size, count, format, arguments);
    std::memcpy(buffer, guarded.Data(), kLogBufferSize);
    return result;
}

TEST_F(LogTest, NothingPastTheBufferIsTouched) {
    {
        const ImportPatch patch("_vsnprintf_s", AsReplacement(FormatInGuardedBuffer));
        sRealFormatter = patch.Original<Formatter>();
        LogMessage(kLogNote, "%s", std::string(20000, 'x').c_str());
    }
    EXPECT_EQ(sFormattedCount, _TRUNCATE);  // cut and terminated, never an invalid parameter
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
