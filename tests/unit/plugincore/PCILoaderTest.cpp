#include "plugincore/PCILoader.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <memory>
#include <set>

#include "IdleProcess.h"
#include "LoadedPluginCores.h"
#include "ShellFolders.h"
#include "support/fakes/EntryNames.h"
#include "support/fakes/FakePluginCore.h"
#include "support/fakes/ImportPatch.h"
#include "support/Log.h"
#include "support/RecordingLogSink.h"
#include "support/TemporaryFolder.h"

namespace {

const std::string kVersion = "build \xE2\x82\xAC 7";  // of the libraries made for these tests

std::string Library(const std::string& name) { return (TestProgramFolder() / "libraries" / name).string(); }

std::string Hex(const void* address) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%08x", static_cast<unsigned>(Low32(address)));
    return text;
}

struct Box {
    HWND owner = nullptr;
    std::string text;
    std::string caption;
    UINT style = 0;

    bool operator==(const Box&) const = default;
};
std::vector<Box> sBoxes;

int WINAPI RecordBox(HWND owner, LPCSTR text, LPCSTR caption, UINT style) {
    sBoxes.push_back({owner, text, caption, style});
    return IDOK;
}

Box Incompatible(const std::string& path, const std::string& version) {
    return {nullptr, path + " (version " + version + ")", "Incompatible PluginCore", 0x11000};
}

// What IsLoaded said.
struct Answer {
    bool isLoaded = false;
    std::string path = "before";
    std::string version = "before";
    std::uint32_t missingCount = 77;

    bool operator==(const Answer&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Answer& answer) {
    return stream << answer.isLoaded << " '" << answer.path << "' '" << answer.version << "' " << answer.missingCount;
}

Answer Ask(const PCILoader& loader) {
    Answer answer;
    answer.isLoaded = loader.IsLoaded(&answer.path, &answer.version, &answer.missingCount);
    return answer;
}

BOOL WINAPI ListNoProcesses(DWORD*, DWORD, DWORD* size) {
    *size = 0;
    return TRUE;
}

// Every test begins and ends without a shared instance.
class PCILoaderTest : public testing::Test {
  protected:
    PCILoaderTest() {
        ClearRecordedLog();
        sBoxes.clear();
        ThePluginCore() = FakePluginCore();
    }

    PCILoader& Load(const std::string& path) {
        loader.reset(PCILoader::LoadSharedInstance(path));
        return *loader;
    }
    PCILoader& LoadAndForgetLog(const std::string& name) {
        Load(Library(name));
        ClearRecordedLog();
        return *loader;
    }

    std::unique_ptr<PCILoader> loader;
    ImportPatch boxes{"MessageBoxA", AsReplacement(RecordBox)};
};

// --- loading and binding --------------------------------------------------------------------------------------------

// The lines of a load and of the binding of all names.
std::vector<RecordedLine> LoadLines(const std::string& path, HMODULE module) {
    std::vector<RecordedLine> lines = {{0, "SUCCESS: LoadLibraryA('" + path + "') returned " + Hex(module)},
                                       {0, "Loaded " + path}};
    for (const std::string& name : kEntryNames) {
        const auto* const address = reinterpret_cast<const void*>(GetProcAddress(module, name.c_str()));
        lines.push_back({0, "GetProcAddress(" + Hex(module) + ", '" + name + "') returned " + Hex(address)});
    }
    return lines;
}

TEST_F(PCILoaderTest, LoadBindsAllNamesInTheOrderOfTheContract) {
    const std::string path = Library("AllEntries.dll");
    Load(path);
    ASSERT_EQ(kEntryNames.size(), 24u);
    EXPECT_EQ(RecordedLog(), LoadLines(path, GetModuleHandleA(path.c_str())));
}

TEST_F(PCILoaderTest, MissingNamesAreLookedUpAndLoggedToo) {
    const std::string path = Library("FourEntries.dll");
    Load(path);
    EXPECT_EQ(RecordedLog(), LoadLines(path, GetModuleHandleA(path.c_str())));
}

TEST_F(PCILoaderTest, LoadedLibraryIsTheSharedInstanceWithoutALogLine) {
    PCILoader& loaded = LoadAndForgetLog("AllEntries.dll");
    EXPECT_EQ(PCILoader::GetSharedInstance(), &loaded);
    EXPECT_EQ(PCILoader::LoadSharedInstance(Library("FourEntries.dll")), &loaded);
    EXPECT_TRUE(RecordedLog().empty());
    EXPECT_EQ(Ask(loaded).path, Library("AllEntries.dll"));
}

TEST_F(PCILoaderTest, LibraryThatLacksEntriesYieldsAnInstanceAllTheSame) {
    const PCILoader* const loaded = PCILoader::LoadSharedInstance(Library("NoEntries.dll"));
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(PCILoader::GetSharedInstance(), loaded);
    loader.reset(PCILoader::GetSharedInstance());
}

DWORD WINAPI RefuseVersionSize(LPCSTR, LPDWORD) {
    SetLastError(2);
    return 0;
}

TEST_F(PCILoaderTest, MissingLibraryIsLoggedByItsBareName) {
    const ImportPatch version("GetFileVersionInfoSizeA", AsReplacement(RefuseVersionSize));
    EXPECT_EQ(PCILoader::LoadSharedInstance("C:\\absent\\PluginCoreX64.dll"), nullptr);
    EXPECT_EQ(RecordedLog(),
              (std::vector<RecordedLine>{
                  {0, "LoadLibraryA('C:\\absent\\PluginCoreX64.dll') returned error code 0x0000007e (126)"},
                  {0, "GetFileVersionInfoA('C:\\absent\\PluginCoreX64.dll', ...) returned error code 0x00000002 (2)"},
                  {0, "ERROR:  cannot find PluginCoreX64.dll"}}));
    EXPECT_TRUE(sBoxes.empty());
}

TEST_F(PCILoaderTest, DestructorForgetsTheInstanceAndKeepsTheLibrary) {
    const std::string path = Library("AllEntries.dll");
    Load(path);
    loader.reset();
    EXPECT_NE(GetModuleHandleA(path.c_str()), nullptr);
    Load(Library("FourEntries.dll"));
    EXPECT_EQ(Ask(*loader).path, Library("FourEntries.dll"));
}

TEST_F(PCILoaderTest, BindingToANullModuleNullsEverythingInSilenceAndCountsOn) {
    PCILoader& loaded = LoadAndForgetLog("AllEntries.dll");
    loaded.BindEntryPoints(nullptr);
    EXPECT_TRUE(RecordedLog().empty());
    EXPECT_TRUE(loaded.CheckEntryPoints(false));
    EXPECT_EQ(Ask(loaded).missingCount, 24u);
    loaded.BindEntryPoints(nullptr);
    EXPECT_EQ(Ask(loaded).missingCount, 48u);
    loaded.BindEntryPoints(GetModuleHandleA(Library("AllEntries.dll").c_str()));
    EXPECT_EQ(Ask(loaded).missingCount, 0u);
}

// --- the diagnostic check -------------------------------------------------------------------------------------------

TEST_F(PCILoaderTest, CheckFindsNothingWhereAllIsAsExpected) {
    EXPECT_TRUE(LoadAndForgetLog("AllEntries.dll").CheckEntryPoints(true));
    loader->BindEntryPoints(nullptr);
    EXPECT_TRUE(loader->CheckEntryPoints(false));
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(PCILoaderTest, CheckNamesEachEntryThatIsNull) {
    const std::set<std::string> present = {"GetMenus", "HandleSaveDocument", "IdleEvent", "PluginIsEnabled"};
    EXPECT_FALSE(LoadAndForgetLog("FourEntries.dll").CheckEntryPoints(true));
    std::vector<RecordedLine> expected;
    for (const std::string& name : kEntryNames) {
        if (present.count(name) == 0) {
            expected.push_back({0, "ERROR:  this->pf" + name + " is NULL."});
        }
    }
    EXPECT_EQ(expected.size(), 20u);
    EXPECT_EQ(RecordedLog(), expected);
}

TEST_F(PCILoaderTest, CheckNamesEachEntryThatIsNotNull) {
    EXPECT_FALSE(LoadAndForgetLog("FourEntries.dll").CheckEntryPoints(false));
    EXPECT_EQ(RecordedTexts(),
              (std::vector<std::string>{
                  "ERROR:  this->pfGetMenus is not NULL.", "ERROR:  this->pfHandleSaveDocument is not NULL.",
                  "ERROR:  this->pfIdleEvent is not NULL.", "ERROR:  this->pfPluginIsEnabled is not NULL."}));
}

TEST_F(PCILoaderTest, CheckNamesAllEntriesInOrder) {
    EXPECT_FALSE(LoadAndForgetLog("AllEntries.dll").CheckEntryPoints(false));
    std::vector<std::string> expected;
    for (const std::string& name : kEntryNames) {
        expected.push_back("ERROR:  this->pf" + name + " is not NULL.");
    }
    EXPECT_EQ(RecordedTexts(), expected);
}

// --- IsLoaded -------------------------------------------------------------------------------------------------------

TEST_F(PCILoaderTest, LibraryWithAllEntriesThatAcceptsTheVersionIsLoaded) {
    EXPECT_EQ(Ask(LoadAndForgetLog("AllEntries.dll")), (Answer{true, Library("AllEntries.dll"), kVersion, 0}));
    EXPECT_TRUE(RecordedLog().empty());
    EXPECT_TRUE(sBoxes.empty());
}

TEST_F(PCILoaderTest, LibraryIsAskedForInterfaceVersion1WithAZeroedValue) {
    Ask(Load(FakePluginCorePath()));
    EXPECT_EQ(ThePluginCore().calls.Calls(), std::vector<std::string>{"GetAPIVersion(0, 1)"});
}

TEST_F(PCILoaderTest, LibraryThatRefusesTheVersionIsNotLoadedInSilence) {
    Load(FakePluginCorePath());
    ClearRecordedLog();
    for (const std::int32_t code : {1, -1, 0x12000000}) {
        ThePluginCore().calls.FailAlways("GetAPIVersion", code);
        EXPECT_EQ(Ask(*loader), (Answer{false, FakePluginCorePath(), "", 0}));
    }
    EXPECT_TRUE(RecordedLog().empty());
    EXPECT_TRUE(sBoxes.empty());
}

std::int32_t AcceptVersion(std::uint32_t*, std::int32_t) { return 0; }

// A library of which only the version can be asked.
FARPROC WINAPI FindOnlyApiVersion(HMODULE, LPCSTR name) {
    return std::string(name) == "GetAPIVersion" ? reinterpret_cast<FARPROC>(reinterpret_cast<void*>(AcceptVersion))
                                                : nullptr;
}

TEST_F(PCILoaderTest, AcceptedVersionCountsMoreThanMissingEntries) {
    {
        const ImportPatch patch("GetProcAddress", AsReplacement(FindOnlyApiVersion));
        Load(Library("AllEntries.dll"));
    }
    ClearRecordedLog();
    EXPECT_EQ(Ask(*loader), (Answer{true, Library("AllEntries.dll"), kVersion, 23}));
    EXPECT_TRUE(RecordedLog().empty());
    EXPECT_TRUE(sBoxes.empty());
}

TEST_F(PCILoaderTest, LibraryWithoutApiVersionIsShownWithTheReason) {
    const std::string path = Library("WithoutApiVersion.dll");
    EXPECT_EQ(Ask(LoadAndForgetLog("WithoutApiVersion.dll")), (Answer{false, path, kVersion, 1}));
    EXPECT_EQ(
        RecordedLog(),
        (std::vector<RecordedLine>{{0, "PCILoader::IsLoaded() returning false. Reason: 1 function(s) missing from " +
                                           path + ", version '" + kVersion + "'"}}));
    EXPECT_EQ(sBoxes, std::vector{Incompatible(path, kVersion)});
}

TEST_F(PCILoaderTest, LibraryWithFourEntriesIsSaidToLackAll20) {
    const std::string path = Library("FourEntries.dll");
    EXPECT_EQ(Ask(LoadAndForgetLog("FourEntries.dll")), (Answer{false, path, kVersion, 20}));
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {0, "PCILoader::IsLoaded() returning false because all 20 functions are missing."}}));
    EXPECT_EQ(sBoxes, std::vector{Incompatible(path, kVersion)});
}

TEST_F(PCILoaderTest, LibraryWithoutAnyEntryGetsTheReasonWith24) {
    const std::string path = Library("NoEntries.dll");
    EXPECT_EQ(Ask(LoadAndForgetLog("NoEntries.dll")), (Answer{false, path, kVersion, 24}));
    EXPECT_EQ(
        RecordedLog(),
        (std::vector<RecordedLine>{{0, "PCILoader::IsLoaded() returning false. Reason: 24 function(s) missing from " +
                                           path + ", version '" + kVersion + "'"}}));
    EXPECT_EQ(sBoxes, std::vector{Incompatible(path, kVersion)});
}

TEST_F(PCILoaderTest, LibraryWithoutAVersionIsShownWithAnEmptyOne) {
    Load(Library("OtherLanguage.dll"));
    Ask(*loader);
    EXPECT_EQ(sBoxes, std::vector{Incompatible(Library("OtherLanguage.dll"), "")});
}

TEST_F(PCILoaderTest, BoxIsShownEveryTime) {
    LoadAndForgetLog("FourEntries.dll");
    Ask(*loader);
    Ask(*loader);
    Ask(*loader);
    EXPECT_EQ(sBoxes.size(), 3u);
    EXPECT_EQ(RecordedLog().size(), 3u);
}

TEST_F(PCILoaderTest, NullOutputIsACallersErrorAndNothingIsTouched) {
    LoadAndForgetLog("FourEntries.dll");
    Answer answer;
    EXPECT_FALSE(loader->IsLoaded(nullptr, &answer.version, &answer.missingCount));
    EXPECT_FALSE(loader->IsLoaded(&answer.path, nullptr, &answer.missingCount));
    EXPECT_FALSE(loader->IsLoaded(&answer.path, &answer.version, nullptr));
    EXPECT_EQ(answer, Answer());
    const RecordedLine line{0, "PCILoader::IsLoaded() returning false because it was called incorrectly."};
    EXPECT_EQ(RecordedLog(), (std::vector{line, line, line}));
    EXPECT_TRUE(sBoxes.empty());
}

TEST_F(PCILoaderTest, NullOutputIsAnErrorOfALibraryThatIsFineToo) {
    LoadAndForgetLog("AllEntries.dll");
    std::string text;
    EXPECT_FALSE(loader->IsLoaded(&text, &text, nullptr));
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
    std::filesystem::copy_file(Library("AllEntries.dll"), folder.Path() / "PluginCoreX64.dll");
    WriteWholeFile(folder.Path() / "Quorvel" / "com.quorvel.Lumet-LaunchInfo.conf",
                   "lumet.path=" + (folder.Path() / "Lumet.exe").string() + "\r\n");
    EXPECT_NE(Get(), nullptr);
    EXPECT_EQ(Ask(*loader).path, (folder.Path() / "PluginCoreX64.dll").string());
}

TEST_F(SharedInstanceTest, SuccessIsLoggedOnceWithTheInstance) {
    std::filesystem::copy_file(Library("AllEntries.dll"), folder.Path() / "PluginCoreX64.dll");
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
    std::filesystem::copy_file(Library("AllEntries.dll"), beside);
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
    std::filesystem::copy_file(Library("AllEntries.dll"), folder.Path() / "PluginCoreX64.dll");
    const IdleProcess lumet(folder.Path() / "Lumet.exe");
    const std::unique_ptr<PCILoader> loader(PCILoader::GetSharedInstance());
    ASSERT_NE(loader, nullptr);
    EXPECT_EQ(Ask(*loader), (Answer{true, (folder.Path() / "PluginCoreX64.dll").string(), kVersion, 0}));
}

// --- PluginCoreIsEnabled --------------------------------------------------------------------------------------------

TEST_F(PCILoaderTest, EnabledFlagDecidesWhetherThePluginCoreIsEnabled) {
    Load(FakePluginCorePath());
    ThePluginCore().recordEnabledQueries = true;
    ThePluginCore().calls.FailAlways("PluginIsEnabled", 5);  // the result does not count
    EXPECT_TRUE(PluginCoreIsEnabled());
    ThePluginCore().enabled = false;
    EXPECT_FALSE(PluginCoreIsEnabled());
    EXPECT_EQ(ThePluginCore().calls.Calls(),
              (std::vector<std::string>{"PluginIsEnabled(1, 0)", "PluginIsEnabled(1, 0)"}));
}

TEST_F(SharedInstanceTest, PluginCoreThatIsNotThereIsNotEnabled) {
    const ImportPatch library("LoadLibraryA", AsReplacement(LoadNothing));
    EXPECT_FALSE(PluginCoreIsEnabled());
}

}  // namespace
