#include "diagnostic/LogFile.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "doubles/common/ImportPatch.h"
#include "LogFolderGuard.h"
#include "support/files/TemporaryFolder.h"
#include "support/TextConversion.h"

namespace {

namespace fs = std::filesystem;

constexpr SYSTEMTIME kBegin{2026, 1, 5, 2, 3, 4, 5, 6};

BOOL WINAPI DiskIsFull(HANDLE, LPCVOID, DWORD, DWORD* written, OVERLAPPED*) {
    *written = 0;
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

int sSearchesClosed = 0;
BOOL WINAPI CountClosedSearch(HANDLE) {
    ++sSearchesClosed;
    return TRUE;
}
DWORD WINAPI NoVariable(LPCWSTR, LPWSTR, DWORD) { return 0; }
DWORD WINAPI NoTemporaryFolder(DWORD, LPWSTR) { return 0; }
int sFoldersMade = 0;
BOOL WINAPI CountMadeFolder(LPCWSTR, SECURITY_ATTRIBUTES*) {
    ++sFoldersMade;
    return TRUE;
}

class LogFileTest : public testing::Test {
  protected:
    ~LogFileTest() override { file.Close(); }

    void Open(LogFileLimits limits = {}) { file.Open(folder.Path().wstring(), kBegin, 77, limits); }

    std::vector<std::string> Names() const {
        std::vector<std::string> names;
        for (const auto& each : fs::directory_iterator(folder.Path())) {
            names.push_back(each.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }
    std::string Content(const std::string& name = "QuorvelTypeAgentAI20-20260102-030405-77.log") const {
        return ReadWholeFile(folder.Path() / name);
    }
    // Written so many hours ago.
    void MakeOld(const std::string& name, int hours) const {
        WriteWholeFile(folder.Path() / name, "old");
        fs::last_write_time(folder.Path() / name, fs::file_time_type::clock::now() - std::chrono::hours(hours));
    }

    TemporaryFolder folder;
    LogFile file;
};

TEST_F(LogFileTest, IsNamedByItsBeginningAndItsProcess) {
    Open();
    file.Append("line\r\n");
    EXPECT_EQ(Names(), std::vector<std::string>{"QuorvelTypeAgentAI20-20260102-030405-77.log"});
    EXPECT_EQ(Content(), "line\r\n");
    EXPECT_EQ(file.Part(), 1);
}

TEST_F(LogFileTest, TwoProcessesHaveFilesOfTheirOwn) {
    Open();
    LogFile other;
    other.Open(folder.Path().wstring(), kBegin, 78);
    file.Append("one\r\n");
    other.Append("two\r\n");
    file.Append("three\r\n");
    other.Close();
    EXPECT_EQ(Content(), "one\r\nthree\r\n");
    EXPECT_EQ(Content("QuorvelTypeAgentAI20-20260102-030405-78.log"), "two\r\n");
}

TEST_F(LogFileTest, RunThatBeginsAgainInTheSameSecondIsAppended) {
    Open();
    file.Append("one\r\n");
    file.Close();
    Open();
    file.Append("two\r\n");
    EXPECT_EQ(Content(), "one\r\ntwo\r\n");
}

TEST_F(LogFileTest, WhatRunsBeforeHaveWrittenCountsForTheLimit) {
    Open();
    file.Append("12345678");
    file.Close();
    Open({.partSize = 10, .keptFiles = 10});
    EXPECT_TRUE(file.HasRoomFor(2));
    EXPECT_FALSE(file.HasRoomFor(3));
}

TEST_F(LogFileTest, IsFullAtItsLimitAndGoesOnInAnotherPart) {
    Open({.partSize = 10, .keptFiles = 10});
    EXPECT_TRUE(file.HasRoomFor(100));  // an empty one takes everything
    file.Append("12345678");
    EXPECT_TRUE(file.HasRoomFor(2));
    EXPECT_FALSE(file.HasRoomFor(3));
    file.OpenNextPart();
    EXPECT_EQ(file.Part(), 2);
    EXPECT_TRUE(file.HasRoomFor(100));
    file.Append("next");
    EXPECT_EQ(Content(), "12345678");
    EXPECT_EQ(Content("QuorvelTypeAgentAI20-20260102-030405-77-part2.log"), "next");
}

TEST_F(LogFileTest, LastLineIsReplacedUntilSomethingIsAppended) {
    Open();
    file.Append("a\r\n");
    file.AppendOrReplace("a long line\r\n");
    file.AppendOrReplace("short\r\n");
    EXPECT_EQ(Content(), "a\r\nshort\r\n");
    file.Append("b\r\n");
    file.AppendOrReplace("other\r\n");
    file.AppendOrReplace("longer than that\r\n");
    EXPECT_EQ(Content(), "a\r\nshort\r\nb\r\nlonger than that\r\n");
}

TEST_F(LogFileTest, WhatIsAppendedBehindAShortenedLineHasNoGap) {
    Open();
    file.AppendOrReplace("a long line\r\n");
    file.AppendOrReplace("short\r\n");
    file.Append("b\r\n");
    EXPECT_EQ(Content(), "short\r\nb\r\n");
    EXPECT_TRUE(file.HasRoomFor(1));
}

TEST_F(LogFileTest, KeepsTheNewestFilesOfAllRuns) {
    MakeOld("QuorvelTypeAgentAI20-oldest.log", 5);
    MakeOld("QuorvelTypeAgentAI20-old.log", 4);
    MakeOld("QuorvelTypeAgentAI20-newer.log", 3);
    MakeOld("somebody else's.log", 9);
    Open({.partSize = 10, .keptFiles = 3});
    EXPECT_EQ(Names(),
              (std::vector<std::string>{"QuorvelTypeAgentAI20-20260102-030405-77.log", "QuorvelTypeAgentAI20-newer.log",
                                        "QuorvelTypeAgentAI20-old.log", "somebody else's.log"}));
}

TEST_F(LogFileTest, OwnPartsCountAsWell) {
    Open({.partSize = 10, .keptFiles = 2});
    for (int i = 0; i < 4; ++i) {
        file.OpenNextPart();
    }
    EXPECT_EQ(Names(), (std::vector<std::string>{"QuorvelTypeAgentAI20-20260102-030405-77-part4.log",
                                                 "QuorvelTypeAgentAI20-20260102-030405-77-part5.log"}));
}

TEST_F(LogFileTest, FileOfARunningHostIsNotDeleted) {
    Open();
    file.Append("mine\r\n");
    MakeOld("QuorvelTypeAgentAI20-old.log", 1);
    LogFile other;
    other.Open(folder.Path().wstring(), kBegin, 78, {.partSize = 10, .keptFiles = 1});
    EXPECT_EQ(Names(), (std::vector<std::string>{"QuorvelTypeAgentAI20-20260102-030405-77.log",
                                                 "QuorvelTypeAgentAI20-20260102-030405-78.log"}));
    file.Append("goes on\r\n");
    other.Close();
    EXPECT_EQ(Content(), "mine\r\ngoes on\r\n");
}

TEST_F(LogFileTest, FilesThatAreYoungerThanOneThatCannotBeDeletedAreDeletedAllTheSame) {
    MakeOld("QuorvelTypeAgentAI20-20260102-030405-77.log", 5);
    Open();
    MakeOld("QuorvelTypeAgentAI20-old.log", 1);
    LogFile other;
    other.Open(folder.Path().wstring(), kBegin, 78, {.partSize = 10, .keptFiles = 1});
    EXPECT_EQ(Names(), (std::vector<std::string>{"QuorvelTypeAgentAI20-20260102-030405-77.log",
                                                 "QuorvelTypeAgentAI20-20260102-030405-78.log"}));
    other.Close();
}

TEST_F(LogFileTest, SearchForOldFilesIsClosed) {
    const ImportPatch patch("FindClose", AsReplacement(CountClosedSearch));
    sSearchesClosed = 0;
    Open();
    EXPECT_EQ(sSearchesClosed, 1);
}

TEST_F(LogFileTest, WithoutAFolderNothingHappens) {
    file.Open(L"", kBegin, 77);
    file.Append("line");
    file.AppendOrReplace("line");
    EXPECT_TRUE(file.HasRoomFor(100'000'000));
    file.Open((folder.Path() / "missing").wstring(), kBegin, 77);
    file.Append("line");
    file.OpenNextPart();
    file.Append("line");
    file.Open(std::wstring(2000, L'x'), kBegin, 77);
    file.Append("line");
    EXPECT_TRUE(Names().empty());
}

TEST_F(LogFileTest, WhatAFullDiskDoesNotTakeIsLost) {
    Open();
    file.Append("one\r\n");
    {
        const ImportPatch full("WriteFile", AsReplacement(DiskIsFull));
        file.Append("two\r\n");
        file.AppendOrReplace("three\r\n");
        file.AppendOrReplace("four\r\n");
    }
    file.Append("five\r\n");
    EXPECT_EQ(Content(), "one\r\nfive\r\n");
}

TEST(MakeLogFolder, LiesInTheLocalApplicationData) {
    const LogFolderGuard guard;
    wchar_t path[1024];
    const std::size_t length = MakeLogFolder(path);
    EXPECT_EQ(std::wstring(path, length), guard.Logs().wstring());
    EXPECT_TRUE(fs::is_directory(guard.Logs()));
    EXPECT_EQ(MakeLogFolder(path), length);  // it is there already
}

TEST(MakeLogFolder, SeparatorsAtTheEndAreNotDoubled) {
    const LogFolderGuard guard;
    for (const wchar_t* const separators : {L"\\", L"/", L"\\/"}) {
        SetEnvironmentVariableW(L"LOCALAPPDATA", (guard.LocalAppData().wstring() + separators).c_str());
        wchar_t path[1024];
        EXPECT_EQ(std::wstring(path, MakeLogFolder(path)), guard.Logs().wstring()) << Utf8FromWindowsText(separators);
    }
}

TEST(MakeLogFolder, LiesInTheTemporaryFolderWithoutLocalApplicationData) {
    const LogFolderGuard guard;
    SetEnvironmentVariableW(L"LOCALAPPDATA", nullptr);
    wchar_t before[MAX_PATH] = {};
    GetEnvironmentVariableW(L"TMP", before, MAX_PATH);
    SetEnvironmentVariableW(L"TMP", guard.LocalAppData().c_str());
    wchar_t path[1024];
    const std::size_t length = MakeLogFolder(path);
    SetEnvironmentVariableW(L"TMP", before);
    EXPECT_EQ(std::wstring(path, length), guard.Logs().wstring());
}

TEST(MakeLogFolder, IsNothingWhereNoFolderCanBeMade) {
    const LogFolderGuard guard;
    WriteWholeFile(guard.LocalAppData() / "Quorvel", "a file of that name");
    wchar_t path[1024];
    EXPECT_EQ(MakeLogFolder(path), 0u);
    wchar_t small[20];
    EXPECT_EQ(MakeLogFolder(small), 0u);
}

TEST(MakeLogFolder, IsNothingWhereItsPathDoesNotFit) {
    const LogFolderGuard guard;
    const std::size_t needed = guard.Logs().wstring().size() + 1;
    std::vector<wchar_t> path(needed);
    EXPECT_EQ(MakeLogFolder(path), needed - 1);
    path.pop_back();
    EXPECT_EQ(MakeLogFolder(path), 0u);
}

TEST(MakeLogFolder, IsNothingWhereWindowsNamesNoFolder) {
    const ImportPatch variable("GetEnvironmentVariableW", AsReplacement(NoVariable));
    const ImportPatch temporary("GetTempPathW", AsReplacement(NoTemporaryFolder));
    const ImportPatch make("CreateDirectoryW", AsReplacement(CountMadeFolder));
    sFoldersMade = 0;
    wchar_t path[1024] = {};
    EXPECT_EQ(MakeLogFolder(path), 0u);
    EXPECT_EQ(sFoldersMade, 0);
}

}  // namespace
