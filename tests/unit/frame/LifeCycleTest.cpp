#include "frame/LifeCycle.h"

#include "support/Errors.h"
#include "support/plugincore/MissingPluginCore.h"
#include "unit/frame/LifeCycleFixture.h"

namespace {

using Calls = std::vector<std::string>;

// What start-up asks of the host, step by step; without a document that has a path.
const Calls kBlocks = {"AcquireSuite('SP Blocks Suite', 2)", "AllocateBlock(152, 'globals')"};
const Calls kMenus = {"GetDocumentFileSpecification()", "GetFullPath(0)", "Destroy()", "DeleteFilePath()",
                      "AcquireSuite('AI Menu Suite', 11)"};
const std::string kAddItem = "AddMenuItem(null, 'Type Plugins1', '', 4)";
const Calls kMenusDone = {"ReleaseSuite('AI Menu Suite', 11)"};
const std::string kAcquireFileFormat = "AcquireSuite('AI File Format Suite', 14)";
Calls FileFormat(const TestHost& host) {
    return {kAcquireFileFormat,
            "AddFileFormatEx('Quorvel', 4 types ART5 EPSF PDF  AITm, title 'Quorvel', order 0, 'ai,eps,pdf,ait', 1, 0)",
            "SetFileFormatPriority(" + HandleText(host.FileFormat()) + ", 10000)",
            "ReleaseSuite('AI File Format Suite', 14)"};
}
const Calls kBlocksDone = {"ReleaseSuite('SP Blocks Suite', 2)"};
const Calls kTimer = {"AcquireSuite('AI Timer Suite', 5)", "AddTimer('Quorvel AIPlugin Timer', 1)",
                      "ReleaseSuite('AI Timer Suite', 5)"};

Calls Joined(const std::vector<Calls>& parts) {
    Calls all;
    for (const Calls& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

const Calls kNotifiers =
    Joined({{"AcquireSuite('AI Notifier Suite', 4)"}, kElevenNotifiers, {"ReleaseSuite('AI Notifier Suite', 4)"}});

TEST_F(LifeCycleTest, StartupTellsThePluginCoreWhereThePluginIsFirst) {
    ThePluginCore().calls.Show("PluginIsEnabled");
    EXPECT_EQ(CallStartup(), 0);
    EXPECT_EQ(PluginCoreCalls(), (std::vector<std::string>{
                                     "InitializePluginCoreInterface('" + OwnPath() + "')",
                                     "GetMenus('', 4096 zeros, 4096)",
                                     "CreateMenusFromJSONBuffer('')",
                                     "PluginIsEnabled(1, 0)",
                                     // The dialog suppression asks whether the library is usable, then for settings.
                                     "GetAPIVersion(0, 1)",
                                     "GetSettings(8192 zeros, 8192)",
                                 }));
}

TEST_F(LifeCycleTest, StartupIgnoresWhatThePluginCoreAnswersToItsPath) {
    ThePluginCore().script.Fail("InitializePluginCoreInterface", 99);
    EXPECT_EQ(CallStartup(), 0);
    EXPECT_NE(host.globals, nullptr);
}

TEST_F(LifeCycleTest, StartupAllocatesTheGlobals) {
    EXPECT_EQ(CallStartup(), 0);
    ASSERT_NE(sGlobals, nullptr);
    EXPECT_EQ(sGlobals, host.globals);
    EXPECT_EQ(sGlobals->plugin, host.plugin);
    EXPECT_EQ(*sGlobals->text, "");
    EXPECT_EQ(sGlobals->findFontOwner, nullptr);
    EXPECT_EQ(sGlobals->findFontItem, nullptr);
    EXPECT_EQ(sGlobals->idleTimer, host.Timer());
    EXPECT_EQ(sGlobals->fileFormat, host.FileFormat());
}

TEST_F(LifeCycleTest, StartupAddsMenusNotifiersAndFileFormatWithinTheBlocksSuiteAndTheTimerLast) {
    ThePluginCore().script["CreateMenusFromJSONBuffer"].during = [] {
        ThePluginCore().menuCallback("id", "Label", nullptr, 0, 1, 0, nullptr, ThePluginCore().menuContext);
    };
    EXPECT_EQ(CallStartup(), 0);
    EXPECT_EQ(host.calls.Calls(), Joined({kBlocks,
                                          kMenus,
                                          {"CountMenuItems()", kAddItem},
                                          kMenusDone,
                                          kNotifiers,
                                          FileFormat(host),
                                          kBlocksDone,
                                          kTimer}));
}

TEST_F(LifeCycleTest, MenusThatFailCostTheNotifiersAndNothingElse) {
    ThePluginCore().script.Fail("CreateMenusFromJSONBuffer", 0x9000000);
    EXPECT_EQ(CallStartup(), 0);
    EXPECT_EQ(host.calls.Calls(), Joined({kBlocks, kMenus, kMenusDone, FileFormat(host), kBlocksDone, kTimer}));
    EXPECT_EQ(sHooksInstalled, 1);
}

TEST_F(LifeCycleTest, RefusedMenuSuiteEndsTheStartupWithTheHostsCode) {
    host.RefuseSuite("AI Menu Suite", 42);
    EXPECT_EQ(CallStartup(), 42);
    EXPECT_EQ(host.calls.Calls(), Joined({kBlocks, kMenus, kBlocksDone}));
    EXPECT_EQ(sHooksInstalled, 0);
    const std::vector<RecordedLine> log = RecordedLog();
    ASSERT_GE(log.size(), 3u);
    EXPECT_EQ(std::vector<RecordedLine>(log.end() - 3, log.end()),
              (std::vector<RecordedLine>{{0, "ERROR:  throwing 42."},
                                         {0, "StartupPlugin, after catching an error\n"},
                                         {-1, "Exiting StartupPlugin "}}));
}

TEST_F(LifeCycleTest, PathThatTheHostRefusesEndsTheStartupWithTheHostsErrorAndShutdownGivesTheRestBack) {
    host.calls.Fail("GetFullPath", 5);
    SPInterfaceMessage message{host.MessageData()};
    EXPECT_THROW(StartupPlugin(&message), ai::Error);
    host.globals = message.d.globals;
    EXPECT_EQ(host.calls.Calls(), Joined({kBlocks, {kMenus[0], kMenus[1], kMenus[3]}, kBlocksDone}));
    EXPECT_EQ(CallShutdown(), 0);
    EXPECT_EQ(host.LiveBlocks(), 0);
    EXPECT_TRUE(host.HeldSuites().empty());
}

TEST_F(LifeCycleTest, RefusedFileFormatSuiteDoesNotStopTheStartup) {
    host.RefuseSuite("AI File Format Suite", 42);
    EXPECT_EQ(CallStartup(), 0);
    EXPECT_EQ(
        host.calls.Calls(),
        Joined(
            {kBlocks, kMenus, kMenusDone, kNotifiers, {kAcquireFileFormat, kAcquireFileFormat}, kBlocksDone, kTimer}));
    EXPECT_EQ(CountRecorded("Error thrown in AddFileFormat()"), 1);
    EXPECT_EQ(sHooksInstalled, 1);
}

TEST_F(LifeCycleTest, RefusedTimerDoesNotReachStartupsResult) {
    host.calls.Fail("AddTimer", 42);
    EXPECT_EQ(CallStartup(), 0);
    EXPECT_EQ(sGlobals->idleTimer, nullptr);
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "Exiting StartupPlugin "}));
}

TEST_F(LifeCycleTest, StartupLogsEntryAndExitWithItsBlank) {
    CallStartup();
    EXPECT_EQ(RecordedLog().front(), (RecordedLine{1, "Entering StartupPlugin"}));
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "Exiting StartupPlugin "}));
}

TEST_F(LifeCycleTest, StartupInstallsTheHookWhenThePluginCoreIsEnabled) {
    CallStartup();
    EXPECT_EQ(sHooksInstalled, 1);
    EXPECT_EQ(CountRecorded("Entering SetupIllustratorDialogSuppression(1)"), 1);
}

TEST_F(LifeCycleTest, StartupInstallsNoHookWhenThePluginCoreIsDisabled) {
    ThePluginCore().script["PluginIsEnabled"].enabled = 0;
    CallStartup();
    EXPECT_EQ(sHooksInstalled, 0);
    EXPECT_EQ(CountRecorded("Entering SetupIllustratorDialogSuppression(0)"), 1);
}

TEST_F(LifeCycleTest, StartupWithoutTheBlocksSuiteReturnsTheHostsCode) {
    host.RefuseSuite("SP Blocks Suite", 1397641038);
    EXPECT_EQ(CallStartup(), 1397641038);
    EXPECT_EQ(host.globals, nullptr);
    const std::vector<std::string> lines = RecordedTexts();
    ASSERT_GE(lines.size(), 4u);
    EXPECT_EQ(
        std::vector<std::string>(lines.end() - 4, lines.end()),
        (std::vector<std::string>{"ERROR:  throwing 1397641038.", "EXCEPTION: AIErr from AcquireSuite(kSPBlocksSuite)",
                                  "StartupPlugin, after catching an error\n", "Exiting StartupPlugin "}));
    EXPECT_EQ(host.calls.Calls(), std::vector<std::string>{"AcquireSuite('SP Blocks Suite', 2)"});
}

TEST_F(LifeCycleTest, StartupWithoutMemoryReturnsTheHostsCodeAndReleasesTheBlocksSuite) {
    host.calls.Fail("AllocateBlock", 1296385101);
    EXPECT_EQ(CallStartup(), 1296385101);
    EXPECT_EQ(host.globals, nullptr);
    EXPECT_EQ(sGlobals, nullptr);
    EXPECT_EQ(host.calls.Calls(),
              (std::vector<std::string>{"AcquireSuite('SP Blocks Suite', 2)", "AllocateBlock(152, 'globals')",
                                        "ReleaseSuite('SP Blocks Suite', 2)"}));
    EXPECT_EQ(CountRecorded("ERROR:  throwing 1296385101."), 1);
    EXPECT_EQ(CountRecorded("EXCEPTION: AIErr from AcquireSuite(kSPBlocksSuite)"), 0);
    EXPECT_EQ(CountRecorded("StartupPlugin, after catching an error\n"), 1);
}

TEST_F(LifeCycleTest, RefusedNotifierDoesNotReachStartupsResult) {
    host.calls.Fail("AddNotifier", 7, 4);
    EXPECT_EQ(CallStartup(), 0);
    EXPECT_EQ(sHooksInstalled, 1);
    EXPECT_EQ(sGlobals->fileFormat, host.FileFormat());
    EXPECT_EQ(sGlobals->idleTimer, host.Timer());
}

TEST_F(LifeCycleTest, PluginCoreLearnsThePathBeforeTheHostIsAskedForAnything) {
    std::size_t hostCalls = 99;
    ThePluginCore().script["InitializePluginCoreInterface"].during = [&] { hostCalls = host.calls.Calls().size(); };
    CallStartup();
    EXPECT_EQ(hostCalls, 0u);
}

TEST_F(LifeCycleTest, SuppressionIsSetUpAfterTheFileFormatAndWithinTheBlocksSuite) {
    std::vector<std::string> hostCalls;
    ThePluginCore().script["GetSettings"].during = [&] { hostCalls = host.calls.Calls(); };
    CallStartup();
    ASSERT_FALSE(hostCalls.empty());
    EXPECT_EQ(hostCalls, Joined({kBlocks, kMenus, kMenusDone, kNotifiers, FileFormat(host)}));
}

TEST_F(LifeCycleTest, AboutHandsTheFullPathAndAZeroedBufferToThePluginCore) {
    host.currentPath = "C:/Arbeit/Pl\xC3\xA4ne.ai";
    ThePluginCore().script.Fail("InvokeCommandDialog", 17);
    SPMessageData message = host.MessageData();
    EXPECT_EQ(AboutPlugin(&message), 17);
    EXPECT_EQ(PluginCoreCalls(),
              std::vector<std::string>{"InvokeCommandDialog('C:/Arbeit/Pl\xC3\xA4ne.ai', 256 zeros)"});
    EXPECT_EQ(RecordedLog().front(), (RecordedLine{1, "Entering AboutPlugin"}));
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "Exiting AboutPlugin"}));
}

TEST_F(LifeCycleTest, AboutWithALibraryThatLacksTheDialogAnswers0) {
    PCILoader::GetSharedInstance()->BindEntryPoints(nullptr);
    SPMessageData message = host.MessageData();
    EXPECT_EQ(AboutPlugin(&message), 0);
    EXPECT_EQ(RecordedLog().front(), (RecordedLine{1, "Entering AboutPlugin"}));
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "Exiting AboutPlugin"}));
}

TEST_F(LifeCycleTest, AboutWithoutAnyLibraryAnswers0) {
    const MissingPluginCore missing;
    ClearRecords();
    SPMessageData message = host.MessageData();
    EXPECT_EQ(AboutPlugin(&message), 0);
    EXPECT_TRUE(PluginCoreCalls().empty());
    EXPECT_EQ(RecordedLog().front(), (RecordedLine{1, "Entering AboutPlugin"}));
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "Exiting AboutPlugin"}));
}

TEST_F(LifeCycleTest, AboutWithoutADocumentHasAnEmptyPath) {
    host.calls.FailAlways("GetDocumentFileSpecification", 4242);
    SPMessageData message = host.MessageData();
    EXPECT_EQ(AboutPlugin(&message), 0);
    EXPECT_EQ(PluginCoreCalls(), std::vector<std::string>{"InvokeCommandDialog('', 256 zeros)"});
}

}  // namespace
