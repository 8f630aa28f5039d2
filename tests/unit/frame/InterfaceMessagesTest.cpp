#include "frame/InterfaceMessages.h"

#include "frame/base/Suites.h"
#include "support/plugincore/MissingPluginCore.h"
#include "unit/frame/FrameFixture.h"

namespace {

// What message boxes showed; none really opens.
struct ShownBox {
    HWND owner;
    std::wstring text;
    std::wstring caption;
    UINT style;
};
std::vector<ShownBox> sBoxes;

int WINAPI RecordMessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT style) {
    sBoxes.push_back({owner, text, caption, style});
    return IDOK;
}
int WINAPI RecordMessageBoxA(HWND owner, LPCSTR text, LPCSTR caption, UINT style) {
    const std::string narrowText = text;
    const std::string narrowCaption = caption;
    sBoxes.push_back({owner, std::wstring(narrowText.begin(), narrowText.end()),
                      std::wstring(narrowCaption.begin(), narrowCaption.end()), style});
    return IDOK;
}

class InterfaceMessagesTest : public FrameTest {
  protected:
    InterfaceMessagesTest() { sBoxes.clear(); }

    static std::wstring OwnPath() {
        wchar_t path[MAX_PATH] = {};
        GetModuleFileNameW(nullptr, path, MAX_PATH);
        return path;
    }

    ImportPatch boxW{"MessageBoxW", AsReplacement(RecordMessageBoxW)};
    ImportPatch boxA{"MessageBoxA", AsReplacement(RecordMessageBoxA)};
};

class WithoutPluginCoreTest : public InterfaceMessagesTest {
  protected:
    const MissingPluginCore missing;
};

TEST_F(WithoutPluginCoreTest, StartupShowsOneBoxWithThePluginsOwnPathAndAnswers0) {
    EXPECT_EQ(Startup(), 0);
    ASSERT_EQ(sBoxes.size(), 1u);
    EXPECT_EQ(sBoxes[0].owner, nullptr);
    EXPECT_EQ(sBoxes[0].caption, L"Missing PluginCore");
    EXPECT_EQ(sBoxes[0].text, OwnPath());
    EXPECT_EQ(sBoxes[0].style, 0x11000u);
    EXPECT_EQ(host.globals, nullptr);
    EXPECT_EQ(host.calls.Count("AddNotifier"), 0);
    EXPECT_EQ(host.calls.Count("AllocateBlock"), 0);
}

TEST_F(WithoutPluginCoreTest, ShutdownAfterwardsAnswers0AndGivesTheSuitesBack) {
    Startup();
    EXPECT_TRUE(SuitesAreHeld());
    EXPECT_EQ(Send("SP Interface", "Shutdown"), 0);
    EXPECT_TRUE(host.HeldSuites().empty());
    EXPECT_TRUE(PluginCoreCalls().empty());
    // A second one finds nothing to do.
    host.calls.Clear();
    EXPECT_EQ(Send("SP Interface", "Shutdown"), 0);
    EXPECT_TRUE(host.calls.Calls().empty());
}

TEST_F(WithoutPluginCoreTest, AboutReturnsWithoutAPluginCore) {
    Startup();
    EXPECT_EQ(Send("SP Interface", "About"), 0);
    EXPECT_EQ(CountRecorded("Exiting AboutPlugin"), 1);
    EXPECT_EQ(sBoxes.size(), 1u);
}

TEST_F(InterfaceMessagesTest, StartupWithAPluginCoreThatRefusesTheVersionSetsNothingUp) {
    LoadFakePluginCore();
    ThePluginCore().script["GetAPIVersion"].result = 3;
    EXPECT_EQ(Startup(), 0);
    EXPECT_TRUE(sBoxes.empty());
    EXPECT_EQ(host.globals, nullptr);
    EXPECT_EQ(PluginCoreCalls(), std::vector<std::string>{"GetAPIVersion(0, 1)"});
}

TEST_F(InterfaceMessagesTest, StartupAsksTheVersionBeforeAnythingElse) {
    LoadFakePluginCore();
    EXPECT_EQ(Startup(), 0);
    ASSERT_GE(PluginCoreCalls().size(), 2u);
    EXPECT_EQ(PluginCoreCalls()[0], "GetAPIVersion(0, 1)");
    EXPECT_EQ(PluginCoreCalls()[1].rfind("InitializePluginCoreInterface('", 0), 0u);
    EXPECT_NE(host.globals, nullptr);
}

TEST_F(InterfaceMessagesTest, ResultOfStartupIsReturned) {
    LoadFakePluginCore();
    host.calls.Fail("AllocateBlock", 1296385101);
    EXPECT_EQ(Startup(), 1296385101);
}

TEST_F(InterfaceMessagesTest, ResultOfShutdownIsReturned) {
    LoadFakePluginCore();
    Startup();
    ThePluginCore().script.Fail("TerminatePluginCoreInterface", 55);
    EXPECT_EQ(Send("SP Interface", "Shutdown"), 55);
}

TEST_F(InterfaceMessagesTest, ShutdownDoesNotTryAgainWhatItCouldNotRelease) {
    LoadFakePluginCore();
    Startup();
    host.calls.Clear();
    host.RefuseRelease("ATE ApplicationPaint Suite", 19);
    host.ExpectBroken(Rule::kSuiteLeak);
    EXPECT_EQ(Send("SP Interface", "Shutdown"), 0);
    EXPECT_EQ(host.calls.Calls(),
              (std::vector<std::string>{
                  "AcquireSuite('AI Timer Suite', 5)", "GetTimerActive(" + HandleText(host.Timer()) + ")",
                  "SetTimerActive(" + HandleText(host.Timer()) + ", 0)", "ReleaseSuite('AI Timer Suite', 5)",
                  "ReleaseSuite('ATE ApplicationPaint Suite', 1)", "AcquireSuite('SP Blocks Suite', 2)", "FreeBlock()",
                  "ReleaseSuite('SP Blocks Suite', 2)"}));
    EXPECT_TRUE(SuitesAreHeld());
}

TEST_F(InterfaceMessagesTest, StartupWithoutMemoryGivesTheSuitesBackAtShutdown) {
    LoadFakePluginCore();
    host.calls.Fail("AllocateBlock", 1);
    Startup();
    EXPECT_EQ(Send("SP Interface", "Shutdown"), 0);
    EXPECT_TRUE(host.HeldSuites().empty());
}

TEST_F(InterfaceMessagesTest, UnknownSelectorIsLogged) {
    EXPECT_EQ(Send("SP Interface", "Nonsense"), 0);
    EXPECT_EQ(CountRecorded("- unknown message from kSPInterfaceCaller"), 1);
}

}  // namespace
