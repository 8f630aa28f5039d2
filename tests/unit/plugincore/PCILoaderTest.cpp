#include "plugincore/PCILoader.h"

#include <new>
#include <set>

#include "doubles/common/AllocationFaults.h"
#include "PCILoaderFixture.h"

namespace {

// Null when the memory did not suffice.
PCILoader* LoadWithLittleMemory(const std::string& path) {
    try {
        return PCILoader::LoadSharedInstance(path);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

// --- loading and binding --------------------------------------------------------------------------------------------

TEST_F(PCILoaderTest, LoadBindsAllNamesInTheOrderOfTheContract) {
    const std::string path = Library("PluginCoreOfPrivateBuild.dll");
    Load(path);
    ASSERT_EQ(kEntryNames.size(), 24u);
    EXPECT_EQ(RecordedLog(), LoadLines(path, GetModuleHandleA(path.c_str())));
}

TEST_F(PCILoaderTest, MissingNamesAreLookedUpAndLoggedToo) {
    const std::string path = Library("PluginCoreOfFourEntries.dll");
    Load(path);
    EXPECT_EQ(RecordedLog(), LoadLines(path, GetModuleHandleA(path.c_str())));
}

TEST_F(PCILoaderTest, LoadedLibraryIsTheSharedInstanceWithoutALogLine) {
    PCILoader& loaded = LoadAndForgetLog("PluginCoreOfPrivateBuild.dll");
    EXPECT_EQ(PCILoader::GetSharedInstance(), &loaded);
    EXPECT_EQ(PCILoader::LoadSharedInstance(Library("PluginCoreOfFourEntries.dll")), &loaded);
    EXPECT_TRUE(RecordedLog().empty());
    EXPECT_EQ(Ask(loaded).path, Library("PluginCoreOfPrivateBuild.dll"));
}

TEST_F(PCILoaderTest, LibraryThatLacksEntriesYieldsAnInstanceAllTheSame) {
    const PCILoader* const loaded = PCILoader::LoadSharedInstance(Library("PluginCoreWithoutEntries.dll"));
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(PCILoader::GetSharedInstance(), loaded);
    loader.reset(PCILoader::GetSharedInstance());
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
    const std::string path = Library("PluginCoreOfPrivateBuild.dll");
    Load(path);
    loader.reset();
    EXPECT_NE(GetModuleHandleA(path.c_str()), nullptr);
    Load(Library("PluginCoreOfFourEntries.dll"));
    EXPECT_EQ(Ask(*loader).path, Library("PluginCoreOfFourEntries.dll"));
}

// Else the plug-in would keep an instance without entries for as long as the host runs.
TEST_F(PCILoaderTest, LoadThatRunsOutOfMemorySharesNothingAndTheNextOneSucceeds) {
    const std::string path = Library("PluginCoreOfPrivateBuild.dll");
    int failures = 0;
    for (bool happened = true; happened;) {
        PCILoader* loaded = nullptr;
        {
            const FailingAllocation failure(static_cast<std::size_t>(failures) + 1);
            loaded = LoadWithLittleMemory(path);
            happened = failure.HasHappened();
        }
        EXPECT_EQ(loaded == nullptr, happened) << "allocation " << failures + 1;
        EXPECT_EQ(Ask(Load(path)), (Answer{true, path, kVersion, 0})) << "allocation " << failures + 1;
        loader.reset();
        failures += happened ? 1 : 0;
    }
    EXPECT_GE(failures, 4);
}

TEST_F(PCILoaderTest, BindingToANullModuleNullsEverythingInSilenceAndCountsOn) {
    PCILoader& loaded = LoadAndForgetLog("PluginCoreOfPrivateBuild.dll");
    loaded.BindEntryPoints(nullptr);
    EXPECT_TRUE(RecordedLog().empty());
    EXPECT_TRUE(loaded.CheckEntryPoints(false));
    EXPECT_EQ(Ask(loaded).missingCount, 24u);
    loaded.BindEntryPoints(nullptr);
    EXPECT_EQ(Ask(loaded).missingCount, 48u);
    loaded.BindEntryPoints(GetModuleHandleA(Library("PluginCoreOfPrivateBuild.dll").c_str()));
    EXPECT_EQ(Ask(loaded).missingCount, 0u);
}

TEST_F(PCILoaderTest, EntryThatTheLibraryLacksAnswersNotFound) {
    const PCILoader& loaded = LoadAndForgetLog("PluginCoreOfFourEntries.dll");
    EXPECT_EQ(loaded.pfTerminatePluginCoreInterface(), kLookupNotFound);
    EXPECT_EQ(loaded.pfHandleCloseDocument("", ""), 0);
}

// --- the diagnostic check -------------------------------------------------------------------------------------------

TEST_F(PCILoaderTest, CheckFindsNothingWhereAllIsAsExpected) {
    EXPECT_TRUE(LoadAndForgetLog("PluginCoreOfPrivateBuild.dll").CheckEntryPoints(true));
    loader->BindEntryPoints(nullptr);
    EXPECT_TRUE(loader->CheckEntryPoints(false));
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(PCILoaderTest, CheckNamesEachEntryThatIsNull) {
    const std::set<std::string> present = {"HandleCloseDocument", "HandleOpenExistingDocument",
                                           "InitializePluginCoreInterface", "PluginIsEnabled"};
    EXPECT_FALSE(LoadAndForgetLog("PluginCoreOfFourEntries.dll").CheckEntryPoints(true));
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
    EXPECT_FALSE(LoadAndForgetLog("PluginCoreOfFourEntries.dll").CheckEntryPoints(false));
    EXPECT_EQ(RecordedTexts(), (std::vector<std::string>{"ERROR:  this->pfHandleCloseDocument is not NULL.",
                                                         "ERROR:  this->pfHandleOpenExistingDocument is not NULL.",
                                                         "ERROR:  this->pfInitializePluginCoreInterface is not NULL.",
                                                         "ERROR:  this->pfPluginIsEnabled is not NULL."}));
}

TEST_F(PCILoaderTest, CheckNamesAllEntriesInOrder) {
    EXPECT_FALSE(LoadAndForgetLog("PluginCoreOfPrivateBuild.dll").CheckEntryPoints(false));
    std::vector<std::string> expected;
    for (const std::string& name : kEntryNames) {
        expected.push_back("ERROR:  this->pf" + name + " is not NULL.");
    }
    EXPECT_EQ(RecordedTexts(), expected);
}

// --- IsLoaded -------------------------------------------------------------------------------------------------------

TEST_F(PCILoaderTest, LibraryWithAllEntriesThatAcceptsTheVersionIsLoaded) {
    EXPECT_EQ(Ask(LoadAndForgetLog("PluginCoreOfPrivateBuild.dll")),
              (Answer{true, Library("PluginCoreOfPrivateBuild.dll"), kVersion, 0}));
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
        ThePluginCore().script["GetAPIVersion"].result = code;
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
        Load(Library("PluginCoreOfPrivateBuild.dll"));
    }
    ClearRecordedLog();
    EXPECT_EQ(Ask(*loader), (Answer{true, Library("PluginCoreOfPrivateBuild.dll"), kVersion, 23}));
    EXPECT_TRUE(RecordedLog().empty());
    EXPECT_TRUE(sBoxes.empty());
}

TEST_F(PCILoaderTest, LibraryWithoutApiVersionIsShownWithTheReason) {
    const std::string path = Library("PluginCoreWithoutGetAPIVersion.dll");
    EXPECT_EQ(Ask(LoadAndForgetLog("PluginCoreWithoutGetAPIVersion.dll")), (Answer{false, path, kVariantVersion, 1}));
    EXPECT_EQ(
        RecordedLog(),
        (std::vector<RecordedLine>{{0, "PCILoader::IsLoaded() returning false. Reason: 1 function(s) missing from " +
                                           path + ", version '" + kVariantVersion + "'"}}));
    EXPECT_EQ(sBoxes, std::vector{Incompatible(path, kVariantVersion)});
}

TEST_F(PCILoaderTest, LibraryWithFourEntriesIsSaidToLackAll20) {
    const std::string path = Library("PluginCoreOfFourEntries.dll");
    EXPECT_EQ(Ask(LoadAndForgetLog("PluginCoreOfFourEntries.dll")), (Answer{false, path, kVariantVersion, 20}));
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {0, "PCILoader::IsLoaded() returning false because all 20 functions are missing."}}));
    EXPECT_EQ(sBoxes, std::vector{Incompatible(path, kVariantVersion)});
}

TEST_F(PCILoaderTest, LibraryWithoutAnyEntryGetsTheReasonWith24) {
    const std::string path = Library("PluginCoreWithoutEntries.dll");
    EXPECT_EQ(Ask(LoadAndForgetLog("PluginCoreWithoutEntries.dll")), (Answer{false, path, kVariantVersion, 24}));
    EXPECT_EQ(
        RecordedLog(),
        (std::vector<RecordedLine>{{0, "PCILoader::IsLoaded() returning false. Reason: 24 function(s) missing from " +
                                           path + ", version '" + kVariantVersion + "'"}}));
    EXPECT_EQ(sBoxes, std::vector{Incompatible(path, kVariantVersion)});
}

TEST_F(PCILoaderTest, LibraryWithoutAVersionIsShownWithAnEmptyOne) {
    Load(Library("PluginCoreOfOtherLanguage.dll"));
    Ask(*loader);
    EXPECT_EQ(sBoxes, std::vector{Incompatible(Library("PluginCoreOfOtherLanguage.dll"), "")});
}

TEST_F(PCILoaderTest, BoxIsShownEveryTime) {
    LoadAndForgetLog("PluginCoreOfFourEntries.dll");
    Ask(*loader);
    Ask(*loader);
    Ask(*loader);
    EXPECT_EQ(sBoxes.size(), 3u);
    EXPECT_EQ(RecordedLog().size(), 3u);
}

TEST_F(PCILoaderTest, NullOutputIsACallersErrorAndNothingIsTouched) {
    LoadAndForgetLog("PluginCoreOfFourEntries.dll");
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
    LoadAndForgetLog("PluginCoreOfPrivateBuild.dll");
    std::string text;
    EXPECT_FALSE(loader->IsLoaded(&text, &text, nullptr));
}

}  // namespace
