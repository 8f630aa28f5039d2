#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "doubles/common/ImportPatch.h"
#include "support/files/TemporaryFolder.h"

// The name that the build gives the diagnostic sink here: WriteLogLine is the recording one.
void WriteDiagnosticLogLine(std::int32_t level, const char* text) noexcept;

namespace {

std::vector<std::string> sDebuggerLines;

void WINAPI RecordDebuggerLine(LPCSTR text) { sDebuggerLines.push_back(text); }
DWORD WINAPI NoTemporaryFolder(DWORD, LPWSTR) { return 0; }
DWORD WINAPI TooLongTemporaryFolder(DWORD size, LPWSTR) { return size + 1; }

class DiagnosticLogSinkTest : public testing::Test {
  protected:
    DiagnosticLogSinkTest() {
        // Out of all operations, wherever the test before has stopped.
        for (int i = 0; i < 300; ++i) {
            WriteDiagnosticLogLine(-1, "");
        }
        SetEnvironmentVariableW(L"TMP", folder.Path().c_str());
        std::filesystem::remove(LogFile());
        sDebuggerLines.clear();
    }
    ~DiagnosticLogSinkTest() override { SetEnvironmentVariableW(L"TMP", mTmp.c_str()); }

    std::filesystem::path LogFile() const { return folder.Path() / "QuorvelTypeAgentAI20.log"; }
    std::string LogText() const { return ReadWholeFile(LogFile()); }

    static std::wstring Tmp() {
        wchar_t value[MAX_PATH] = {};
        GetEnvironmentVariableW(L"TMP", value, MAX_PATH);
        return value;
    }

    TemporaryFolder folder;
    ImportPatch debugger{"OutputDebugStringA", AsReplacement(RecordDebuggerLine)};

  private:
    std::wstring mTmp = Tmp();
};

TEST_F(DiagnosticLogSinkTest, LineGoesToTheFileInTheTemporaryFolder) {
    WriteDiagnosticLogLine(0, "a line with \xE2\x82\xAC");
    EXPECT_EQ(LogText(), "a line with \xE2\x82\xAC\r\n");
}

TEST_F(DiagnosticLogSinkTest, LineGoesToTheDebugger) {
    WriteDiagnosticLogLine(0, "one");
    WriteDiagnosticLogLine(0, "two");
    EXPECT_EQ(sDebuggerLines, (std::vector<std::string>{"one\r\n", "two\r\n"}));
}

TEST_F(DiagnosticLogSinkTest, LinesAreAppended) {
    WriteWholeFile(LogFile(), "of an earlier start\r\n");
    WriteDiagnosticLogLine(0, "of this start");
    WriteDiagnosticLogLine(0, "%s");
    EXPECT_EQ(LogText(), "of an earlier start\r\nof this start\r\n%s\r\n");
}

TEST_F(DiagnosticLogSinkTest, LevelsIndentByTwoColumns) {
    WriteDiagnosticLogLine(1, "Entering A");
    WriteDiagnosticLogLine(0, "note in A");
    WriteDiagnosticLogLine(1, "Entering B");
    WriteDiagnosticLogLine(0, "note in B");
    WriteDiagnosticLogLine(-1, "Exiting B");
    WriteDiagnosticLogLine(-1, "Exiting A");
    WriteDiagnosticLogLine(0, "outside");
    EXPECT_EQ(LogText(),
              "Entering A\r\n"
              "  note in A\r\n"
              "  Entering B\r\n"
              "    note in B\r\n"
              "  Exiting B\r\n"
              "Exiting A\r\n"
              "outside\r\n");
}

TEST_F(DiagnosticLogSinkTest, ExitWithoutEntryDoesNotMoveTheLinesThatFollow) {
    WriteDiagnosticLogLine(-1, "Exiting");
    WriteDiagnosticLogLine(-1, "Exiting");
    WriteDiagnosticLogLine(1, "Entering");
    WriteDiagnosticLogLine(0, "inside");
    EXPECT_EQ(LogText(), "Exiting\r\nExiting\r\nEntering\r\n  inside\r\n");
}

TEST_F(DiagnosticLogSinkTest, DeepNestingIndentsBy200ColumnsAtMost) {
    for (int i = 0; i < 250; ++i) {
        WriteDiagnosticLogLine(1, "");
    }
    const std::string longest(8191, 'x');
    WriteDiagnosticLogLine(0, longest.c_str());
    EXPECT_EQ(sDebuggerLines.back(), std::string(200, ' ') + longest + "\r\n");
    EXPECT_EQ(LogText().substr(LogText().size() - 8393), sDebuggerLines.back());
    WriteDiagnosticLogLine(-1, "Exiting");
    EXPECT_EQ(sDebuggerLines.back(), std::string(200, ' ') + "Exiting\r\n");
}

TEST_F(DiagnosticLogSinkTest, LogFileCanBeReadWhileItGrows) {
    WriteDiagnosticLogLine(0, "first");
    const HANDLE reader = CreateFileW(LogFile().c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(reader, INVALID_HANDLE_VALUE);
    WriteDiagnosticLogLine(0, "second");
    CloseHandle(reader);
    EXPECT_EQ(LogText(), "first\r\nsecond\r\n");
}

TEST_F(DiagnosticLogSinkTest, FileIsClosedAfterEachLine) {
    WriteDiagnosticLogLine(0, "first");
    EXPECT_TRUE(std::filesystem::remove(LogFile()));
    WriteDiagnosticLogLine(0, "second");
    EXPECT_EQ(LogText(), "second\r\n");
}

TEST_F(DiagnosticLogSinkTest, WithoutATemporaryFolderOnlyTheDebuggerIsTold) {
    {
        const ImportPatch none("GetTempPathW", AsReplacement(NoTemporaryFolder));
        WriteDiagnosticLogLine(0, "one");
    }
    const ImportPatch tooLong("GetTempPathW", AsReplacement(TooLongTemporaryFolder));
    WriteDiagnosticLogLine(0, "two");
    EXPECT_EQ(sDebuggerLines, (std::vector<std::string>{"one\r\n", "two\r\n"}));
    EXPECT_FALSE(std::filesystem::exists(LogFile()));
}

TEST_F(DiagnosticLogSinkTest, FileThatCannotBeOpenedCostsNothing) {
    std::filesystem::create_directory(LogFile());
    WriteDiagnosticLogLine(0, "one");
    EXPECT_EQ(sDebuggerLines, std::vector<std::string>{"one\r\n"});
    EXPECT_TRUE(std::filesystem::is_directory(LogFile()));
}

}  // namespace
