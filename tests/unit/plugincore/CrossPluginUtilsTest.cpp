#include "plugincore/CrossPluginUtils.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "doubles/common/ImportPatch.h"
#include "plugincore/PCILoader.h"
#include "support/log/RecordingLogSink.h"
#include "support/patches/ShownBoxes.h"
#include "support/plugincore/FakePluginCore.h"
#include "support/PluginInfo.h"
#include "TestLibraries.h"

namespace {

using Calls = std::vector<std::string>;
using Lines = std::vector<RecordedLine>;

class CrossPluginUtilsTest : public testing::Test {
  protected:
    CrossPluginUtilsTest() {
        LoadFakePluginCore();
        ClearRecordedLog();
        ThePluginCore().calls.Clear();
    }
    static const Calls& PluginCoreCalls() { return ThePluginCore().calls.Calls(); }
};

TEST_F(CrossPluginUtilsTest, OpenPassesNoBufferAndASizeOf0) {
    ThePluginCore().script.Fail("HandleOpenExistingDocument", 0x12000000);
    EXPECT_EQ(CrossPluginUtils::HandleOpenExistingDocument("C:/a.ai"), 0x12000000);
    EXPECT_EQ(PluginCoreCalls(), Calls{"HandleOpenExistingDocument('C:/a.ai', null, 0)"});
    EXPECT_EQ(RecordedLog(), (Lines{
                                 {1, "Entering CrossPluginUtils::HandleOpenExistingDocument('C:/a.ai')"},
                                 {-1, "CrossPluginUtils::HandleOpenExistingDocument('C:/a.ai') returning 301989888"},
                             }));
}

TEST_F(CrossPluginUtilsTest, SavePassesPathAndReport) {
    ThePluginCore().script.Fail("HandleSaveDocument", -3);
    EXPECT_EQ(CrossPluginUtils::HandleSaveDocument("C:/a.ai", "{}"), -3);
    EXPECT_EQ(PluginCoreCalls(), Calls{"HandleSaveDocument('C:/a.ai', '{}')"});
    EXPECT_EQ(RecordedLog(), (Lines{
                                 {1, "Entering CrossPluginUtils::HandleSaveDocument('C:/a.ai')"},
                                 {-1, "CrossPluginUtils::HandleSaveDocument('C:/a.ai') returning -3"},
                             }));
}

TEST_F(CrossPluginUtilsTest, CloseIsLoggedWithoutQuotesOnEntry) {
    ThePluginCore().script.Fail("HandleCloseDocument", 7);
    EXPECT_EQ(CrossPluginUtils::HandleCloseDocument("C:/a.ai", "{}"), 7);
    EXPECT_EQ(PluginCoreCalls(), Calls{"HandleCloseDocument('C:/a.ai', '{}')"});
    EXPECT_EQ(RecordedLog(), (Lines{
                                 {1, "Entering CrossPluginUtils::HandleCloseDocument(C:/a.ai)"},
                                 {-1, "CrossPluginUtils::HandleCloseDocument('C:/a.ai') returning 7"},
                             }));
}

TEST_F(CrossPluginUtilsTest, StartupPassesTheIdentityText) {
    PluginInfo::Initialize("an identity");
    ThePluginCore().script.Fail("InitializePluginCoreInterface", 5);
    EXPECT_EQ(CrossPluginUtils::Startup(), 5);
    EXPECT_EQ(PluginCoreCalls(), Calls{"InitializePluginCoreInterface('an identity')"});
    EXPECT_EQ(RecordedLog(), (Lines{
                                 {1, "Entering CrossPluginUtils::Startup()"},
                                 {-1, "Exiting CrossPluginUtils::Startup()"},
                             }));
}

TEST_F(CrossPluginUtilsTest, StartupPassesAtMost64CharactersOfIdentity) {
    PluginInfo::Initialize(std::string(100, 'i').c_str());
    CrossPluginUtils::Startup();
    EXPECT_EQ(PluginCoreCalls(), Calls{"InitializePluginCoreInterface('" + std::string(64, 'i') + "')"});
}

TEST_F(CrossPluginUtilsTest, ShutdownPassesTheResultOn) {
    ThePluginCore().script.Fail("TerminatePluginCoreInterface", 6);
    EXPECT_EQ(CrossPluginUtils::Shutdown(), 6);
    EXPECT_EQ(PluginCoreCalls(), Calls{"TerminatePluginCoreInterface()"});
    EXPECT_EQ(RecordedLog(), (Lines{
                                 {1, "Entering CrossPluginUtils::Shutdown()"},
                                 {-1, "Exiting CrossPluginUtils::Shutdown()"},
                             }));
}

TEST_F(CrossPluginUtilsTest, SocketPortPassesThePointerOn) {
    std::uint32_t port = 4711;
    ThePluginCore().script.Fail("GetSocketPort", 8);
    EXPECT_EQ(CrossPluginUtils::GetSocketPort(&port), 8);
    EXPECT_EQ(PluginCoreCalls(), Calls{"GetSocketPort(4711)"});
    EXPECT_EQ(RecordedLog(), (Lines{
                                 {1, "Entering CrossPluginUtils::GetSocketPort()"},
                                 {-1, "Exiting CrossPluginUtils::GetSocketPort()"},
                             }));
}

TEST_F(CrossPluginUtilsTest, PanelMessagesPassTheFlagOnWithoutALine) {
    ThePluginCore().script.Fail("ProcessPanelMessages", 9, 2);
    EXPECT_EQ(CrossPluginUtils::ProcessPanelMessages(1), 0);
    EXPECT_EQ(CrossPluginUtils::ProcessPanelMessages(0), 9);
    EXPECT_EQ(PluginCoreCalls(), (Calls{"ProcessPanelMessages(1)", "ProcessPanelMessages(0)"}));
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(CrossPluginUtilsTest, EnabledStateIsTheFlagAndNotTheResult) {
    ThePluginCore().calls.Show("PluginIsEnabled");
    EXPECT_EQ(CrossPluginUtils::IsPluginCoreEnabled(), 1u);
    ThePluginCore().script["PluginIsEnabled"].enabled = 0;
    EXPECT_EQ(CrossPluginUtils::IsPluginCoreEnabled(), 0u);
    EXPECT_EQ(PluginCoreCalls(), (Calls{"PluginIsEnabled(1, 0)", "PluginIsEnabled(1, 0)"}));
    EXPECT_TRUE(RecordedLog().empty());
}

TEST(CrossPluginUtilsVersion, IsTheLibrarysAndIsReturnedInTheCallersString) {
    ASSERT_NE(PCILoader::LoadSharedInstance(Library("PluginCoreOfPrivateBuild.dll")), nullptr);
    ClearRecordedLog();
    std::string version = "before";
    EXPECT_EQ(&CrossPluginUtils::GetPluginCoreVersion(version), &version);
    EXPECT_EQ(version, kVersion);
    EXPECT_TRUE(RecordedLog().empty());
}

TEST(CrossPluginUtilsVersion, OfAnIncompatibleLibraryIsToldAllTheSameAndTheLibraryIsShownOnce) {
    const ShownBoxes boxes;
    const std::string path = Library("PluginCoreOfFourEntries.dll");
    ASSERT_NE(PCILoader::LoadSharedInstance(path), nullptr);
    std::string version = "before";
    EXPECT_EQ(&CrossPluginUtils::GetPluginCoreVersion(version), &version);
    EXPECT_EQ(version, kVariantVersion);
    EXPECT_EQ(sBoxes, std::vector{Incompatible(path, kVariantVersion)});
}

// --- the foreground -------------------------------------------------------------------------------------------------

Calls sSteps;
std::vector<HWND> sForegroundAnswers;
HWND sParent = nullptr;

std::string Named(HWND window) { return std::to_string(reinterpret_cast<std::uintptr_t>(window)); }

HWND WINAPI AnswerForeground() {
    const HWND answer = sForegroundAnswers.front();
    sForegroundAnswers.erase(sForegroundAnswers.begin());
    return answer;
}
HWND WINAPI AnswerParent(HWND window) {
    sSteps.push_back("parent of " + Named(window));
    return sParent;
}
BOOL WINAPI RefuseForeground(HWND window) {
    sSteps.push_back("foreground to " + Named(window));
    return FALSE;
}
HWND WINAPI AnswerDesktop() { return reinterpret_cast<HWND>(9); }

void Callback() { sSteps.emplace_back("callback"); }

class RefreshTest : public testing::Test {
  protected:
    static Calls StepsWith(std::uintptr_t first, std::uintptr_t second, std::uintptr_t parent, void (*callback)()) {
        sSteps.clear();
        sForegroundAnswers = {reinterpret_cast<HWND>(first), reinterpret_cast<HWND>(second)};
        sParent = reinterpret_cast<HWND>(parent);
        CrossPluginUtils::RefreshActiveFontList(callback);
        EXPECT_TRUE(sForegroundAnswers.empty()) << "the foreground window is read twice";
        return sSteps;
    }

    ImportPatch get{"GetForegroundWindow", AsReplacement(AnswerForeground)};
    ImportPatch set{"SetForegroundWindow", AsReplacement(RefuseForeground)};
    ImportPatch desktop{"GetDesktopWindow", AsReplacement(AnswerDesktop)};
    ImportPatch parentOf{"GetParent", AsReplacement(AnswerParent)};
};

TEST_F(RefreshTest, CallbackIsCalledBeforeAndAfterTheToggle) {
    EXPECT_EQ(StepsWith(1, 1, 0, Callback),
              (Calls{"callback", "parent of 1", "foreground to 9", "foreground to 1", "callback"}));
    EXPECT_EQ(RecordedLog(), (Lines{
                                 {1, "Entering CrossPluginUtils::RefreshActiveFontList"},
                                 {-1, "Exiting CrossPluginUtils::RefreshActiveFontList"},
                             }));
}

TEST_F(RefreshTest, WithoutACallbackOnlyTheForegroundIsToggled) {
    EXPECT_EQ(StepsWith(1, 1, 0, nullptr), (Calls{"parent of 1", "foreground to 9", "foreground to 1"}));
}

TEST_F(RefreshTest, WindowWhoseParentHadTheForegroundIsToggledToo) {
    EXPECT_EQ(StepsWith(1, 2, 1, nullptr), (Calls{"parent of 2", "foreground to 9", "foreground to 2"}));
}

TEST_F(RefreshTest, ForegroundThatChangesHandsStays) { EXPECT_EQ(StepsWith(1, 2, 3, nullptr), Calls{"parent of 2"}); }

TEST_F(RefreshTest, WithoutAForegroundWindowNothingIsSwitched) {
    EXPECT_EQ(StepsWith(0, 0, 0, nullptr), Calls{"parent of 0"});
    // Its parent is null like the first window: still nothing to give the foreground back to.
    EXPECT_EQ(StepsWith(1, 0, 1, Callback), (Calls{"callback", "parent of 0", "callback"}));
    EXPECT_EQ(RecordedLog().size(), 4u);
}

}  // namespace
