// The other half of plugincore/PCILoader.h: finding the one instance that everybody shares, and asking it.
#include <filesystem>

#include "IdleProcess.h"
#include "LoadedPluginCores.h"
#include "PCILoaderFixture.h"
#include "ShellFolders.h"

namespace {

BOOL WINAPI ListNoProcesses(DWORD*, DWORD, DWORD* size) {
    *size = 0;
    return TRUE;
}

// --- GetSharedInstance ----------------------------------------------------------------------------------------------

HMODULE WINAPI LoadNothing(LPCSTR) {
    SetLastError(126);
    return nullptr;
}

// What the search logs before the library is loaded, when no core application runs.
std::vector<RecordedLine> SearchLines() {
    return {{1, "Entering first call to PCILoader::GetSharedInstance()"},
            {1, "Entering GetPathToRunningProcessExe('Lumet', ...)"},
            {-1, "GetPathToRunningProcessExe('Lumet', '') returned 352321536"}};
}

std::vector<RecordedLine> FailedSearchLines() {
    std::vector<RecordedLine> lines = SearchLines();
    lines.push_back({0, "LoadLibraryA('PluginCoreX64.dll') returned error code 0x0000007e (126)"});
    lines.push_back({0, "GetFileVersionInfoA('PluginCoreX64.dll', ...) returned error code 0x00000002 (2)"});
    lines.push_back({0, "ERROR:  cannot find PluginCoreX64.dll"});
    lines.push_back({-1, "Exiting first call to PCILoader::GetSharedInstance(); sSharedInstance=0x00000000"});
    return lines;
}

// No core application runs or has left a launch-info file, unless the test says so.
class SharedInstanceTest : public PCILoaderTest {
  protected:
    PCILoader* Get() {
        PCILoader* const instance = PCILoader::GetSharedInstance();
        if (instance != loader.get()) {
            loader.reset(instance);
        }
        return instance;
    }

    TemporaryFolder folder;
    LoadedPluginCores loaded;
    ShellFolders shellFolders{folder.Path().wstring(), std::nullopt};
    ImportPatch processes{"K32EnumProcesses", AsReplacement(ListNoProcesses)};
};

TEST_F(SharedInstanceTest, FailedSearchIsRepeatedByEveryCall) {
    const ImportPatch library("LoadLibraryA", AsReplacement(LoadNothing));
    const ImportPatch version("GetFileVersionInfoSizeA", AsReplacement(RefuseVersionSize));
    for (int i = 0; i < 2; ++i) {
        ClearRecordedLog();
        EXPECT_EQ(Get(), nullptr);
        EXPECT_EQ(RecordedLog(), FailedSearchLines());
    }
    EXPECT_TRUE(sBoxes.empty());
}

TEST_F(SharedInstanceTest, LibraryThatTurnsUpLaterIsPickedUp) {
    {
        const ImportPatch library("LoadLibraryA", AsReplacement(LoadNothing));
        EXPECT_EQ(Get(), nullptr);
    }
    std::filesystem::copy_file(Library("PluginCoreOfPrivateBuild.dll"), folder.Path() / "PluginCoreX64.dll");
    WriteWholeFile(folder.Path() / "Quorvel" / "com.quorvel.Lumet-LaunchInfo.conf",
                   "lumet.path=" + (folder.Path() / "Lumet.exe").string() + "\r\n");
    EXPECT_NE(Get(), nullptr);
    EXPECT_EQ(Ask(*loader).path, (folder.Path() / "PluginCoreX64.dll").string());
}

TEST_F(SharedInstanceTest, SuccessIsLoggedOnceWithTheInstance) {
    std::filesystem::copy_file(Library("PluginCoreOfPrivateBuild.dll"), folder.Path() / "PluginCoreX64.dll");
    const std::string path = (folder.Path() / "PluginCoreX64.dll").string();
    WriteWholeFile(folder.Path() / "Quorvel" / "com.quorvel.Lumet-LaunchInfo.conf",
                   "lumet.path=" + (folder.Path() / "Lumet.exe").string());
    PCILoader* const instance = Get();
    ASSERT_NE(instance, nullptr);
    std::vector<RecordedLine> expected = SearchLines();
    for (const RecordedLine& line : LoadLines(path, GetModuleHandleA(path.c_str()))) {
        expected.push_back(line);
    }
    expected.push_back({-1, "Exiting first call to PCILoader::GetSharedInstance(); sSharedInstance=" + Hex(instance)});
    EXPECT_EQ(RecordedLog(), expected);

    ClearRecordedLog();
    EXPECT_EQ(Get(), instance);
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(SharedInstanceTest, WithoutADirectoryWindowsSearchOrderDecides) {
    // Beside the program is where Windows looks first.
    const std::filesystem::path beside = TestProgramFolder() / "PluginCoreX64.dll";
    std::filesystem::remove(beside);
    std::filesystem::copy_file(Library("PluginCoreOfPrivateBuild.dll"), beside);
    {
        const LoadedPluginCores loadedBeside;
        ASSERT_NE(Get(), nullptr);
        EXPECT_EQ(Ask(*loader), (Answer{true, "PluginCoreX64.dll", kVersion, 0}));
        wchar_t path[MAX_PATH] = {};
        GetModuleFileNameW(GetModuleHandleW(L"PluginCoreX64.dll"), path, MAX_PATH);
        EXPECT_TRUE(std::filesystem::equivalent(path, beside)) << std::filesystem::path(path);
    }
    EXPECT_TRUE(std::filesystem::remove(beside));
}

TEST(SharedInstanceOfARunningLumetTest, IsLoadedFromTheFolderOfTheProcess) {
    const TemporaryFolder folder;
    const LoadedPluginCores loaded;
    std::filesystem::copy_file(Library("PluginCoreOfPrivateBuild.dll"), folder.Path() / "PluginCoreX64.dll");
    const IdleProcess lumet(folder.Path() / "Lumet.exe");
    const std::unique_ptr<PCILoader> loader(PCILoader::GetSharedInstance());
    ASSERT_NE(loader, nullptr);
    EXPECT_EQ(Ask(*loader), (Answer{true, (folder.Path() / "PluginCoreX64.dll").string(), kVersion, 0}));
}

// --- RequirePluginCore ----------------------------------------------------------------------------------------------

TEST_F(PCILoaderTest, RequiredPluginCoreIsTheSharedInstance) {
    const PCILoader& loaded = LoadAndForgetLog("PluginCoreOfFourEntries.dll");
    EXPECT_EQ(&RequirePluginCore(), &loaded);
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(SharedInstanceTest, RequiredPluginCoreThatIsNotThereIsSearchedThenThrown) {
    const ImportPatch library("LoadLibraryA", AsReplacement(LoadNothing));
    const ImportPatch version("GetFileVersionInfoSizeA", AsReplacement(RefuseVersionSize));
    EXPECT_THROW(RequirePluginCore(), NoPluginCore);
    EXPECT_EQ(RecordedLog(), FailedSearchLines());
}

// --- PluginCoreIsEnabled --------------------------------------------------------------------------------------------

TEST_F(PCILoaderTest, EnabledFlagDecidesWhetherThePluginCoreIsEnabled) {
    Load(FakePluginCorePath());
    ThePluginCore().calls.Show("PluginIsEnabled");
    ThePluginCore().script["PluginIsEnabled"].result = 5;  // the result does not count
    EXPECT_TRUE(PluginCoreIsEnabled());
    ThePluginCore().script["PluginIsEnabled"].enabled = 0;
    EXPECT_FALSE(PluginCoreIsEnabled());
    EXPECT_EQ(ThePluginCore().calls.Calls(),
              (std::vector<std::string>{"PluginIsEnabled(1, 0)", "PluginIsEnabled(1, 0)"}));
}

TEST_F(SharedInstanceTest, PluginCoreThatIsNotThereIsNotEnabled) {
    const ImportPatch library("LoadLibraryA", AsReplacement(LoadNothing));
    EXPECT_FALSE(PluginCoreIsEnabled());
}

}  // namespace
