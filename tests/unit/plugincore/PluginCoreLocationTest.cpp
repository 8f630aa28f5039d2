#include "plugincore/PluginCoreLocation.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

#include "doubles/common/ImportPatch.h"
#include "FolderGuard.h"
#include "IdleProcess.h"
#include "OpenedFiles.h"
#include "ShellFolders.h"
#include "support/files/TemporaryFolder.h"

namespace {

BOOL WINAPI ListNoProcesses(DWORD*, DWORD, DWORD* size) {
    *size = 0;
    return TRUE;
}

DWORD WINAPI RefusePath(HANDLE, HMODULE, LPSTR, DWORD) { return 0; }

// Leaves the current folder as it was.
class CurrentFolder {
  public:
    explicit CurrentFolder(const std::filesystem::path& folder) : mBefore(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;
    ~CurrentFolder() { std::filesystem::current_path(mBefore); }

  private:
    std::filesystem::path mBefore;
};

class PluginCoreLocationTest : public testing::Test {
  protected:
    std::filesystem::path LaunchInfo() const {
        return folder.Path() / "local" / "Quorvel" / "com.quorvel.Lumet-LaunchInfo.conf";
    }
    std::string At(const std::string& relative) const { return folder.Path().string() + "\\" + relative; }

    TemporaryFolder folder;
    ShellFolders shellFolders{(folder.Path() / "local").wstring(), (folder.Path() / "common").wstring()};
};

// --- without a running core application -----------------------------------------------------------------------------

class LaunchInfoLocationTest : public PluginCoreLocationTest {
  protected:
    // The path for a launch-info file of this text.
    std::string PathFor(const std::string& text) {
        WriteWholeFile(LaunchInfo(), text);
        return FindPluginCorePath();
    }

    ImportPatch processes{"K32EnumProcesses", AsReplacement(ListNoProcesses)};
};

TEST_F(LaunchInfoLocationTest, WithoutAnyDirectoryThePathIsTheBareName) {
    EXPECT_EQ(FindPluginCorePath(), "PluginCoreX64.dll");
}

TEST_F(LaunchInfoLocationTest, LibraryLiesBesideTheApplication) {
    WriteWholeFile(At("app\\PluginCoreX64.dll"), "");
    EXPECT_EQ(PathFor("lumet.path=" + At("app\\Lumet.exe") + "\r\n"), At("app\\PluginCoreX64.dll"));
}

TEST_F(LaunchInfoLocationTest, LibraryThatIsNotBesideItIsLookedForInPlugInsUntested) {
    EXPECT_EQ(PathFor("lumet.path=C:\\absent\\Lumet.exe\r\n"), "C:\\absent\\Plug-ins\\PluginCoreX64.dll");
}

TEST_F(LaunchInfoLocationTest, SeparatorBehindPlugInsIsTheDirectorysOwn) {
    EXPECT_EQ(PathFor("lumet.path=C:/absent/Lumet.exe\n"), "C:/absent/Plug-ins/PluginCoreX64.dll");
    EXPECT_EQ(PathFor("lumet.path=C:\\absent/Lumet.exe\n"), "C:\\absent/Plug-ins/PluginCoreX64.dll");
    EXPECT_EQ(PathFor("lumet.path=C:/absent\\Lumet.exe\n"), "C:/absent\\Plug-ins\\PluginCoreX64.dll");
}

TEST_F(LaunchInfoLocationTest, FolderWithTheLibrarysNameIsNoLibrary) {
    std::filesystem::create_directories(At("app\\PluginCoreX64.dll"));
    EXPECT_EQ(PathFor("lumet.path=" + At("app\\Lumet.exe")), At("app\\Plug-ins\\PluginCoreX64.dll"));
}

TEST_F(LaunchInfoLocationTest, KeyInsideALongerWordCounts) {
    EXPECT_EQ(PathFor("xlumet.path=D:/x/y.exe\n"), "D:/x/Plug-ins/PluginCoreX64.dll");
}

TEST_F(LaunchInfoLocationTest, BlankBehindTheEqualSignStaysInTheDirectory) {
    EXPECT_EQ(PathFor("lumet.path = C:\\A\\b.exe\n"), " C:\\A\\Plug-ins\\PluginCoreX64.dll");
}

TEST_F(LaunchInfoLocationTest, ValueThatEndsInASeparatorIsKeptWhole) {
    EXPECT_EQ(PathFor("lumet.path=C:\\absent\\\n"), "C:\\absent\\Plug-ins\\PluginCoreX64.dll");
}

TEST_F(LaunchInfoLocationTest, LastCharacterOfAValueWithoutASeparatorStandsInForIt) {
    const CurrentFolder here(folder.Path());
    EXPECT_EQ(PathFor("lumet.path=Lumet\n"), "LumetPlug-instPluginCoreX64.dll");
}

TEST_F(LaunchInfoLocationTest, ValueWithoutASeparatorIsTheStartOfAFileName) {
    const CurrentFolder here(folder.Path());
    WriteWholeFile(At("LumetPluginCoreX64.dll"), "");
    EXPECT_EQ(PathFor("lumet.path=Lumet\n"), "LumetPluginCoreX64.dll");
}

TEST_F(LaunchInfoLocationTest, EmptyValueIsNoDirectory) {
    EXPECT_EQ(PathFor("lumet.path=\nlumet.path=C:\\a\\b.exe\n"), "PluginCoreX64.dll");
}

TEST_F(LaunchInfoLocationTest, CarriageReturnIsNoPieceOfTheValue) {
    EXPECT_EQ(PathFor("lumet.path=Lumet\r\n"), "LumetPlug-instPluginCoreX64.dll");
}

TEST_F(LaunchInfoLocationTest, LocalFileWithoutAUsableLineStopsTheSearch) {
    WriteWholeFile(folder.Path() / "common" / "Quorvel" / "com.quorvel.Lumet-LaunchInfo.conf",
                   "lumet.path=C:\\common\\Lumet.exe\n");
    EXPECT_EQ(PathFor("lumet.version=1\n"), "PluginCoreX64.dll");
    EXPECT_EQ(ShellFolders::Questions(), std::vector{28});
}

TEST_F(LaunchInfoLocationTest, FileInTheCommonFolderAloneLeavesTheBareName) {
    WriteWholeFile(folder.Path() / "common" / "Quorvel" / "com.quorvel.Lumet-LaunchInfo.conf",
                   "lumet.path=C:\\common\\Lumet.exe\n");
    EXPECT_EQ(FindPluginCorePath(), "PluginCoreX64.dll");
    EXPECT_EQ(ShellFolders::Questions(), (std::vector{28, 35}));
}

TEST(PluginCoreLocationAtTheRootTest, IsReadFromTheDrivesRootWithoutALocalFolder) {
    const TemporaryFolder folder;
    WriteWholeFile(folder.Path() / "Quorvel" / "com.quorvel.Lumet-LaunchInfo.conf", "lumet.path=C:\\root\\Lumet.exe\n");
    const ShellFolders shellFolders(std::nullopt, std::nullopt);
    const ImportPatch processes("K32EnumProcesses", AsReplacement(ListNoProcesses));
    const OpenedFiles opened(folder.Path());
    EXPECT_EQ(FindPluginCorePath(), "C:\\root\\Plug-ins\\PluginCoreX64.dll");
    EXPECT_EQ(OpenedFiles::Paths(), std::vector<std::wstring>{L"/Quorvel/com.quorvel.Lumet-LaunchInfo.conf"});
}

TEST(PluginCoreLocationInRealFoldersTest, IsReadFromTheLocalApplicationData) {
    wchar_t local[MAX_PATH + 1] = {};
    wchar_t common[MAX_PATH + 1] = {};
    ASSERT_TRUE(SHGetSpecialFolderPathW(nullptr, local, CSIDL_LOCAL_APPDATA, TRUE));
    ASSERT_TRUE(SHGetSpecialFolderPathW(nullptr, common, CSIDL_COMMON_APPDATA, TRUE));
    const std::filesystem::path localFolder = std::filesystem::path(local) / "Quorvel";
    const std::filesystem::path commonFolder = std::filesystem::path(common) / "Quorvel";
    const FolderGuard localGuard(localFolder);
    const FolderGuard commonGuard(commonFolder);
    const ImportPatch processes("K32EnumProcesses", AsReplacement(ListNoProcesses));

    WriteWholeFile(commonFolder / "com.quorvel.Lumet-LaunchInfo.conf", "lumet.path=C:\\common\\Lumet.exe\n");
    EXPECT_EQ(FindPluginCorePath(), "PluginCoreX64.dll");
    WriteWholeFile(localFolder / "com.quorvel.Lumet-LaunchInfo.conf", "lumet.path=C:\\local\\Lumet.exe\r\n");
    EXPECT_EQ(FindPluginCorePath(), "C:\\local\\Plug-ins\\PluginCoreX64.dll");
}

// --- with a running core application --------------------------------------------------------------------------------

class RunningLumetLocationTest : public PluginCoreLocationTest {
  protected:
    RunningLumetLocationTest() { WriteWholeFile(LaunchInfo(), "lumet.path=C:\\launch-info\\Lumet.exe\n"); }
};

TEST_F(RunningLumetLocationTest, LibraryLiesBesideTheRunningApplication) {
    const IdleProcess lumet(At("app\\Lumet.exe"));
    WriteWholeFile(At("app\\PluginCoreX64.dll"), "");
    EXPECT_EQ(FindPluginCorePath(), At("app\\PluginCoreX64.dll"));
}

TEST_F(RunningLumetLocationTest, LaunchInfoFileIsNotConsulted) {
    const IdleProcess lumet(At("app\\LUMET.EXE"));
    EXPECT_EQ(FindPluginCorePath(), At("app\\Plug-ins\\PluginCoreX64.dll"));
    EXPECT_EQ(ShellFolders::Questions(), std::vector<int>());
}

TEST_F(RunningLumetLocationTest, LaunchInfoFileIsConsultedWhenThePathCannotBeRead) {
    const IdleProcess lumet(At("app\\Lumet.exe"));
    const IdleProcess other(At("other\\Lumet.exe"));
    const ImportPatch patch("K32GetModuleFileNameExA", AsReplacement(RefusePath));
    EXPECT_EQ(FindPluginCorePath(), "C:\\launch-info\\Plug-ins\\PluginCoreX64.dll");
}

TEST_F(RunningLumetLocationTest, LowerProcessIdentifierWins) {
    const IdleProcess upper(At("upper\\LUMET.EXE"));
    const IdleProcess lower(At("lower\\lumet.exe"));
    const std::string winner = upper.Identifier() < lower.Identifier() ? "upper" : "lower";
    EXPECT_EQ(FindPluginCorePath(), At(winner + "\\Plug-ins\\PluginCoreX64.dll"));
}

TEST_F(RunningLumetLocationTest, ApplicationOfAnotherNameIsNotTheCore) {
    const IdleProcess other(At("app\\LumetHelper.exe"));
    EXPECT_EQ(FindPluginCorePath(), "C:\\launch-info\\Plug-ins\\PluginCoreX64.dll");
}

// --- IsRegularFile --------------------------------------------------------------------------------------------------

TEST(IsRegularFileTest, OnlyAFileIsOne) {
    const TemporaryFolder folder;
    WriteWholeFile(folder.Path() / "file", "text");
    WriteWholeFile(folder.Path() / "empty", "");
    EXPECT_TRUE(IsRegularFile((folder.Path() / "file").string()));
    EXPECT_TRUE(IsRegularFile((folder.Path() / "empty").string()));
    EXPECT_FALSE(IsRegularFile(folder.Path().string()));
    EXPECT_FALSE(IsRegularFile((folder.Path() / "absent").string()));
    EXPECT_FALSE(IsRegularFile(""));
}

TEST(IsRegularFileTest, DeviceIsNone) { EXPECT_FALSE(IsRegularFile("NUL")); }

}  // namespace
