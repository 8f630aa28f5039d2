#include "documents/FileModificationDate.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <windows.h>

#include <string>
#include <vector>

#include "doubles/common/AllocationFaults.h"
#include "doubles/common/ImportPatch.h"
#include "support/log/RecordingLogSink.h"
#include "support/TextConversion.h"

namespace {

constexpr std::int64_t kTicksOf1970 = 116444736000000000;

std::vector<std::wstring> sOpened;
HANDLE sLastOpened = nullptr;
DWORD sAccess = 0;
DWORD sShare = 0;
DWORD sDisposition = 0;
DWORD sAttributes = 0;
HANDLE(WINAPI* sRealCreateFile)(LPCWSTR, DWORD, DWORD, LPSECURITY_ATTRIBUTES, DWORD, DWORD, HANDLE) = nullptr;

HANDLE WINAPI RecordCreateFile(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                               DWORD disposition, DWORD attributes, HANDLE templateFile) {
    sOpened.emplace_back(path);
    sAccess = access;
    sShare = share;
    sDisposition = disposition;
    sAttributes = attributes;
    sLastOpened = sRealCreateFile(path, access, share, security, disposition, attributes, templateFile);
    return sLastOpened;
}

// What stat says about the file. The compiler's library asks this function of Windows on behalf of _stat64i32.
std::int64_t sStatTime = 0;
int sStatResult = 0;

int AnswerStat(const char*, struct _stat64* status) {
    status->st_mtime = sStatTime;
    return sStatResult;
}

int WINAPI RefuseConversion(UINT, DWORD, LPCCH, int, LPWSTR units, int) {
    units[0] = L'x';
    return 0;
}

BOOL WINAPI RefuseFileTime(HANDLE, LPFILETIME, LPFILETIME, LPFILETIME) { return FALSE; }

class FileModificationDateTest : public testing::Test {
  protected:
    FileModificationDateTest() {
        sRealCreateFile = open.Original<decltype(sRealCreateFile)>();
        sOpened.clear();
    }
    ~FileModificationDateTest() override { DeleteFileW(widePath.c_str()); }

    // Makes the file at `name` in the temporary folder, last written at so many 100 ns after 1970.
    void WriteFile(const std::wstring& name, std::int64_t ticksSince1970) {
        wchar_t folder[MAX_PATH] = {};
        GetTempPathW(MAX_PATH, folder);
        widePath = folder + std::to_wstring(GetCurrentProcessId()) + name;
        path = Utf8FromUtf16(widePath);
        const HANDLE file = CreateFileW(widePath.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        ASSERT_NE(file, INVALID_HANDLE_VALUE);
        const auto ticks = static_cast<std::uint64_t>(kTicksOf1970 + ticksSince1970);
        const FILETIME time{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
        ASSERT_TRUE(SetFileTime(file, nullptr, nullptr, &time));
        CloseHandle(file);
        sOpened.clear();
    }
    std::uint32_t Date() const { return QuorvelFileUtils::GetFileModificationDate(path.c_str()); }

    ImportPatch open{"CreateFileW", AsReplacement(RecordCreateFile)};
    std::wstring widePath;
    std::string path;
};

constexpr std::int64_t kSecond = 10000000;

TEST_F(FileModificationDateTest, IsTheLastWriteTimeInWholeSeconds) {
    WriteFile(L"a.ai", 1700000000 * kSecond + 9999999);
    EXPECT_EQ(Date(), 1700000000u);
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(FileModificationDateTest, FileIsOpenedForReadingSharedWithReadersAndClosed) {
    WriteFile(L"a.ai", 1700000000 * kSecond);
    Date();
    EXPECT_EQ(sOpened, std::vector<std::wstring>{widePath});
    EXPECT_EQ(sAccess, static_cast<DWORD>(GENERIC_READ));
    EXPECT_EQ(sShare, static_cast<DWORD>(FILE_SHARE_READ));
    EXPECT_EQ(sDisposition, static_cast<DWORD>(OPEN_EXISTING));
    EXPECT_EQ(sAttributes, static_cast<DWORD>(FILE_ATTRIBUTE_NORMAL));
    DWORD flags = 0;
    EXPECT_FALSE(GetHandleInformation(sLastOpened, &flags));
}

TEST_F(FileModificationDateTest, NullPathGives0) {
    EXPECT_EQ(QuorvelFileUtils::GetFileModificationDate(nullptr), 0u);
    EXPECT_TRUE(sOpened.empty());
}

TEST_F(FileModificationDateTest, EmptyPathGives0WithoutAnAttemptToOpenAFile) {
    EXPECT_EQ(QuorvelFileUtils::GetFileModificationDate(""), 0u);
    EXPECT_TRUE(sOpened.empty());
}

TEST_F(FileModificationDateTest, MissingFileGives0AfterBothAttempts) {
    EXPECT_EQ(QuorvelFileUtils::GetFileModificationDate("C:\\no such file"), 0u);
    EXPECT_EQ(sOpened, (std::vector<std::wstring>{L"C:\\no such file", L"C:\\no such file"}));
}

TEST_F(FileModificationDateTest, LastWriteAtTheStartOf1970Gives0) {
    WriteFile(L"a.ai", 0);
    EXPECT_EQ(Date(), 0u);
}

TEST_F(FileModificationDateTest, Utf8PathThatTheAnsiCodePageMisreadsIsReadByTheSecondAttempt) {
    WriteFile(L"\x6587\x66F8.ai", 1700000000 * kSecond);
    EXPECT_EQ(Date(), 1700000000u);
    ASSERT_EQ(sOpened.size(), 2u);
    EXPECT_NE(sOpened[0], widePath);
    EXPECT_EQ(sOpened[1], widePath);
}

TEST_F(FileModificationDateTest, AnsiPathIsReadByTheFirstAttempt) {
    WriteFile(L"\x00E4.ai", 1700000000 * kSecond);
    char ansi[MAX_PATH] = {};
    WideCharToMultiByte(CP_ACP, 0, widePath.c_str(), -1, ansi, MAX_PATH, nullptr, nullptr);
    EXPECT_EQ(QuorvelFileUtils::GetFileModificationDate(ansi), 1700000000u);
    EXPECT_EQ(sOpened, std::vector<std::wstring>{widePath});
}

TEST_F(FileModificationDateTest, TimeBefore1970IsTruncatedTowardZeroAndCutTo32Bits) {
    WriteFile(L"a.ai", -1 * kSecond - kSecond / 2);
    EXPECT_EQ(Date(), 0xFFFFFFFFu);
    WriteFile(L"a.ai", -kSecond / 2);
    EXPECT_EQ(Date(), 0u);
}

TEST_F(FileModificationDateTest, TimeBeyond32BitsIsCut) {
    WriteFile(L"a.ai", (std::int64_t{1} << 32) * kSecond + 7 * kSecond);
    EXPECT_EQ(Date(), 7u);
}

TEST_F(FileModificationDateTest, FileTimeThatCannotBeReadGives0) {
    WriteFile(L"a.ai", 1700000000 * kSecond);
    const ImportPatch time("GetFileTime", AsReplacement(RefuseFileTime));
    EXPECT_EQ(Date(), 0u);
    EXPECT_EQ(sOpened.size(), 2u);
}

TEST_F(FileModificationDateTest, PathThatCannotBeConvertedIsEmpty) {
    WriteFile(L"a.ai", 1700000000 * kSecond);
    const ImportPatch conversion("MultiByteToWideChar", AsReplacement(RefuseConversion));
    EXPECT_EQ(Date(), 0u);
    EXPECT_EQ(sOpened, (std::vector<std::wstring>{L"", L""}));
}

TEST_F(FileModificationDateTest, NoMemoryForThePathGives0) {
    WriteFile(L"a.ai", 1700000000 * kSecond);
    const FailingAllocation fault;
    EXPECT_EQ(Date(), 0u);
    EXPECT_TRUE(fault.HasHappened());
    EXPECT_TRUE(sOpened.empty());
}

TEST_F(FileModificationDateTest, AnyDifferenceFromStatIsLoggedAndDoesNotCount) {
    WriteFile(L"a.ai", 1700000000 * kSecond);
    const ImportPatch stat("_stat64", AsReplacement(AnswerStat));
    sStatResult = 0;
    const auto line = [&](const std::string& seconds) {
        return std::vector<RecordedLine>{{0, "QuorvelFileUtils::GetFileModificationDate(" + path +
                                                 ") returning timestamp that differs from stat result by " + seconds +
                                                 " seconds."}};
    };
    for (const auto& [statTime, difference] : {std::pair<std::int64_t, const char*>{1699999999, "1"},
                                               {1700000001, "-1"},
                                               {1700003600, "-3600"},
                                               {0, "1700000000"}}) {
        sStatTime = statTime;
        ClearRecordedLog();
        EXPECT_EQ(Date(), 1700000000u);
        EXPECT_EQ(RecordedLog(), line(difference));
    }
}

TEST_F(FileModificationDateTest, NoDifferenceIsLoggedWhenStatAgreesOrFails) {
    WriteFile(L"a.ai", 1700000000 * kSecond);
    const ImportPatch stat("_stat64", AsReplacement(AnswerStat));
    sStatTime = 1700000000;
    sStatResult = 0;
    EXPECT_EQ(Date(), 1700000000u);
    sStatTime = 5;
    sStatResult = -1;
    EXPECT_EQ(Date(), 1700000000u);
    EXPECT_TRUE(RecordedLog().empty());
}

}  // namespace
