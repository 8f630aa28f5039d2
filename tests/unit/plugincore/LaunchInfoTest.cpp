#include "plugincore/LaunchInfo.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "FolderGuard.h"
#include "OpenedFiles.h"
#include "ShellFolders.h"
#include "support/files/TemporaryFolder.h"
#include "support/ResultCodes.h"
#include "support/TextConversion.h"

namespace {

const std::vector<int> kLocalOnly = {28};
const std::vector<int> kLocalThenCommon = {28, 35};

// The outcome of one reading; an output that stays as it was is "before".
struct Reading {
    std::int32_t result;
    std::string value;

    bool operator==(const Reading&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Reading& reading) {
    return stream << reading.result << " '" << reading.value << "'";
}

const Reading kNothing{kLookupNotFound, "before"};

Reading ReadValue(const std::string& key = "the.key") {
    Reading reading{0, "before"};
    reading.result = ReadLaunchInfoValue("Folder", "info.conf", key, reading.value);
    return reading;
}

// --- in folders of the test's own -----------------------------------------------------------------------------------

class LaunchInfoTest : public testing::Test {
  protected:
    std::wstring Local() const { return (folder.Path() / "local").wstring(); }
    std::wstring Common() const { return (folder.Path() / "common").wstring(); }
    std::filesystem::path LocalFile() const { return folder.Path() / "local" / "Folder" / "info.conf"; }
    std::filesystem::path CommonFile() const { return folder.Path() / "common" / "Folder" / "info.conf"; }

    Reading ReadText(const std::string& text, const std::string& key = "the.key") {
        WriteWholeFile(LocalFile(), text);
        const ShellFolders folders(Local(), Common());
        return ReadValue(key);
    }

    TemporaryFolder folder;
};

TEST_F(LaunchInfoTest, ValueComesFromTheLocalFolder) {
    WriteWholeFile(LocalFile(), "the.key=local\n");
    WriteWholeFile(CommonFile(), "the.key=common\n");
    const ShellFolders folders(Local(), Common());
    EXPECT_EQ(ReadValue(), (Reading{0, "local"}));
    EXPECT_EQ(ShellFolders::Questions(), kLocalOnly);
}

TEST_F(LaunchInfoTest, FirstUsableLineWins) {
    EXPECT_EQ(ReadText("other=1\n\nthe.key\nthe.key\r=2\nthe.key=first\nthe.key=second\n"), (Reading{0, "first"}));
}

TEST_F(LaunchInfoTest, LastLineNeedsNoLineFeed) { EXPECT_EQ(ReadText("a=1\nthe.key=last"), (Reading{0, "last"})); }

TEST_F(LaunchInfoTest, CarriageReturnIsNoPieceOfTheValue) {
    EXPECT_EQ(ReadText("the.key=value\r\n"), (Reading{0, "value"}));
    EXPECT_EQ(ReadText("the.key=value\r"), (Reading{0, "value"}));
    EXPECT_EQ(ReadText("the.key=val\rue\r\n"), (Reading{0, "val"}));
}

TEST_F(LaunchInfoTest, EmptyKeyTakesTheFirstLineWithAValue) {
    EXPECT_EQ(ReadText("nothing\nany=thing\n", ""), (Reading{0, "thing"}));
}

TEST_F(LaunchInfoTest, EmptyValueIsAValue) { EXPECT_EQ(ReadText("the.key=\nthe.key=2\n"), (Reading{0, ""})); }

TEST_F(LaunchInfoTest, LongLineIsReadWhole) {
    EXPECT_EQ(ReadText("the.key=" + std::string(100000, 'x') + "\n"), (Reading{0, std::string(100000, 'x')}));
}

TEST_F(LaunchInfoTest, LocalFileWithoutAUsableLineStopsTheSearch) {
    for (const char* text : {"", "other=1\n", "the.key\n", "THE.KEY=1\n"}) {
        WriteWholeFile(LocalFile(), text);
        WriteWholeFile(CommonFile(), "the.key=common\n");
        WriteWholeFile(LocalFile().wstring() + L"-common/Folder/info.conf", "the.key=concatenated\n");
        const ShellFolders folders(Local(), L"-common");
        EXPECT_EQ(ReadValue(), kNothing) << text;
        EXPECT_EQ(ShellFolders::Questions(), kLocalOnly) << text;
    }
}

TEST_F(LaunchInfoTest, FileInTheCommonFolderAloneIsNotFound) {
    WriteWholeFile(CommonFile(), "the.key=common\n");
    const ShellFolders folders(Local(), Common());
    EXPECT_EQ(ReadValue(), kNothing);
    EXPECT_EQ(ShellFolders::Questions(), kLocalThenCommon);
}

TEST_F(LaunchInfoTest, SecondAttemptNamesTheLocalPathFollowedByTheCommonOne) {
    // A folder whose name Windows can append: "<local>/Folder/info.conf" + "-common" + "/Folder/info.conf".
    WriteWholeFile(LocalFile().wstring() + L"-common/Folder/info.conf", "the.key=concatenated\n");
    const ShellFolders folders(Local(), L"-common");
    EXPECT_EQ(ReadValue(), (Reading{0, "concatenated"}));
    EXPECT_EQ(ShellFolders::Questions(), kLocalThenCommon);
}

TEST_F(LaunchInfoTest, SecondAttemptWithoutACommonFolderRepeatsFolderAndFile) {
    std::filesystem::create_directories(LocalFile());  // a folder cannot be opened as a file
    WriteWholeFile(LocalFile() / "Folder" / "info.conf", "the.key=repeated\n");
    const ShellFolders folders(Local(), std::nullopt);
    EXPECT_EQ(ReadValue(), (Reading{0, "repeated"}));
}

TEST_F(LaunchInfoTest, WithoutALocalFolderThePathBeginsAtTheDrivesRoot) {
    WriteWholeFile(folder.Path() / "Folder" / "info.conf", "the.key=root\n");
    const ShellFolders folders(std::nullopt, std::nullopt);
    const OpenedFiles opened(folder.Path());
    EXPECT_EQ(ReadValue(), (Reading{0, "root"}));
    EXPECT_EQ(OpenedFiles::Paths(), std::vector<std::wstring>{L"/Folder/info.conf"});
    EXPECT_EQ(ShellFolders::Questions(), kLocalOnly);
}

TEST_F(LaunchInfoTest, WithoutAnyFolderTheSecondAttemptRepeatsFolderAndFile) {
    const ShellFolders folders(std::nullopt, std::nullopt);
    const OpenedFiles opened(folder.Path());
    EXPECT_EQ(ReadValue(), kNothing);
    EXPECT_EQ(OpenedFiles::Paths(),
              (std::vector<std::wstring>{L"/Folder/info.conf", L"/Folder/info.conf/Folder/info.conf"}));
}

TEST_F(LaunchInfoTest, FolderOutsideTheAnsiCodePageIsFound) {
    const std::filesystem::path strange = folder.Path() / L"\x4E2D\xD83D\xDE00";
    WriteWholeFile(strange / "Folder" / "info.conf", "the.key=strange\n");
    const ShellFolders folders(strange.wstring(), std::nullopt);
    EXPECT_EQ(ReadValue(), (Reading{0, "strange"}));
}

TEST_F(LaunchInfoTest, FileMayBeOpenElsewhere) {
    WriteWholeFile(LocalFile(), "the.key=shared\n");
    const HANDLE writer = CreateFileW(LocalFile().c_str(), GENERIC_READ | GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(writer, INVALID_HANDLE_VALUE);
    const ShellFolders folders(Local(), std::nullopt);
    EXPECT_EQ(ReadValue(), (Reading{0, "shared"}));
    CloseHandle(writer);
}

TEST_F(LaunchInfoTest, FileIsClosedAfterReading) {
    EXPECT_EQ(ReadText("the.key=a\n"), (Reading{0, "a"}));
    EXPECT_TRUE(std::filesystem::remove(LocalFile()));
}

TEST_F(LaunchInfoTest, FoldersAreAppendedAsUtf8) {
    const ShellFolders folders(L"C:\\\x20AC", L"D:\\c");
    std::string text = "before ";
    GetLocalAppDataFolder(text);
    EXPECT_EQ(text, "before C:\\\xE2\x82\xAC");
    GetCommonAppDataFolder(text);
    EXPECT_EQ(text,
              "before C:\\\xE2\x82\xAC"
              "D:\\c");
    EXPECT_EQ(ShellFolders::Questions(), kLocalThenCommon);
}

TEST_F(LaunchInfoTest, FolderThatCannotBeObtainedAppendsNothing) {
    const ShellFolders folders(std::nullopt, std::nullopt);
    std::string text = "before";
    GetLocalAppDataFolder(text);
    GetCommonAppDataFolder(text);
    EXPECT_EQ(text, "before");
}

// --- in the real folders of this system -----------------------------------------------------------------------------

std::filesystem::path RealFolder(int identifier) {
    wchar_t path[MAX_PATH + 1] = {};
    EXPECT_TRUE(SHGetSpecialFolderPathW(nullptr, path, identifier, TRUE));
    return path;
}

class RealLaunchInfoTest : public testing::Test {
  protected:
    const std::filesystem::path local = RealFolder(CSIDL_LOCAL_APPDATA);
    const std::filesystem::path common = RealFolder(CSIDL_COMMON_APPDATA);
    const FolderGuard localGuard{local / "Folder"};
    const FolderGuard commonGuard{common / "Folder"};
};

TEST_F(RealLaunchInfoTest, FoldersAreThoseOfWindows) {
    std::string text;
    GetLocalAppDataFolder(text);
    EXPECT_EQ(text, Utf8FromUtf16(local.wstring()));
    text.clear();
    GetCommonAppDataFolder(text);
    EXPECT_EQ(text, Utf8FromUtf16(common.wstring()));
}

TEST_F(RealLaunchInfoTest, LocalFileIsRead) {
    WriteWholeFile(local / "Folder" / "info.conf", "the.key=C:\\App\\Lumet.exe\r\n");
    WriteWholeFile(common / "Folder" / "info.conf", "the.key=common\n");
    EXPECT_EQ(ReadValue(), (Reading{0, "C:\\App\\Lumet.exe"}));
}

TEST_F(RealLaunchInfoTest, CommonFileIsNeverRead) {
    WriteWholeFile(common / "Folder" / "info.conf", "the.key=common\n");
    const OpenedFiles opened;
    EXPECT_EQ(ReadValue(), kNothing);
    const std::wstring first = local.wstring() + L"/Folder/info.conf";
    EXPECT_EQ(OpenedFiles::Paths(),
              (std::vector<std::wstring>{first, first + common.wstring() + L"/Folder/info.conf"}));
}

TEST_F(RealLaunchInfoTest, NoFileIsNotFound) { EXPECT_EQ(ReadValue(), kNothing); }

}  // namespace
