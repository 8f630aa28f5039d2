#include "frame/LifeCycle.h"

#include "dialogs/SuppressionWords.h"
#include "frame/Suites.h"
#include "host/HostError.h"
#include "support/ForeignExceptionGuard.h"
#include "unit/frame/FrameFixture.h"

namespace {

int sHooksInstalled = 0;
int sHooksRemoved = 0;

HHOOK WINAPI CountSetHook(int, HOOKPROC, HINSTANCE, DWORD) {
    ++sHooksInstalled;
    return reinterpret_cast<HHOOK>(0x77);
}
BOOL WINAPI CountUnhook(HHOOK) {
    ++sHooksRemoved;
    return TRUE;
}

using Calls = std::vector<std::string>;

// What start-up asks of the host, step by step; without a document that has a path.
const Calls kBlocks = {"AcquireSuite('SP Blocks Suite', 2)", "AllocateBlock(152, 'globals')"};
const Calls kMenus = {"GetDocumentFileSpecification()", "GetFullPath(0)", "Destroy()", "DeleteFilePath()",
                      "AcquireSuite('AI Menu Suite', 11)"};
const std::string kAddItem = "AddMenuItem(null, 'Type Plugins1', '', 4)";
const Calls kMenusDone = {"ReleaseSuite('AI Menu Suite', 11)"};
const Calls kNotifiers = {"AcquireSuite('AI Notifier Suite', 4)",
                          "AddNotifier('Change!', 'AI Document Changed Notifier')",
                          "AddNotifier('Open!', 'AI Document Opened Notifier')",
                          "AddNotifier('AboutToClose!', 'AI Document About To Close Notifier')",
                          "AddNotifier('Close!', 'AI Document Closed Notifier')",
                          "AddNotifier('New!', 'AI Document New Notifier')",
                          "AddNotifier('Startup', 'AI Application Started Notifier')",
                          "AddNotifier('Shutdown', 'AI Application Shutdown Notifier')",
                          "AddNotifier('font-list change', 'AI Font List Changed Notifier')",
                          "AddNotifier('Menu Changed', 'AI Menu Changed Notifier')",
                          "AddNotifier('Save', 'AI Command Notifier: After Save')",
                          "AddNotifier('Save As', 'AI Command Notifier: After Save As')",
                          "ReleaseSuite('AI Notifier Suite', 4)"};
const Calls kFileFormat = {
    "AcquireSuite('AI File Format Suite', 14)",
    "AddFileFormatEx('Quorvel', 4 types ART5 EPSF PDF  AITm, title 'Quorvel', order 0, 'ai,eps,pdf,ait', 1, 0)",
    "SetFileFormatPriority(0x100007001, 10000)", "ReleaseSuite('AI File Format Suite', 14)"};
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

class LifeCycleTest : public FrameTest {
  protected:
    LifeCycleTest() {
        sHooksInstalled = 0;
        sHooksRemoved = 0;
        LoadFakePluginCore();
        // As the dispatch leaves things before it calls an operation.
        sBasicSuite = host.Basic();
        AcquireSuites();
        ClearRecords();
    }

    std::int32_t CallStartup() {
        SPInterfaceMessage message{host.MessageData()};
        const std::int32_t result = StartupPlugin(&message);
        host.globals = message.d.globals;
        return result;
    }

    std::int32_t CallShutdown() {
        SPMessageData message = host.MessageData();
        const std::int32_t result = ShutdownPlugin(&message);
        host.globals = message.globals;
        return result;
    }

    static std::string OwnPath() { return FakePluginCorePath(); }

    ImportPatch setHook{"SetWindowsHookExW", AsReplacement(CountSetHook)};
    ImportPatch unhook{"UnhookWindowsHookEx", AsReplacement(CountUnhook)};
};

TEST_F(LifeCycleTest, StartupTellsThePluginCoreWhereThePluginIsFirst) {
    ThePluginCore().recordEnabledQueries = true;
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
    ThePluginCore().calls.Fail("InitializePluginCoreInterface", 99);
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
    EXPECT_EQ(sGlobals->idleTimer, host.timer.handle);
    EXPECT_EQ(sGlobals->fileFormat, host.fileFormat.handle);
}

TEST_F(LifeCycleTest, StartupAddsMenusNotifiersAndFileFormatWithinTheBlocksSuiteAndTheTimerLast) {
    ThePluginCore().duringEntry["CreateMenusFromJSONBuffer"] = [] {
        ThePluginCore().menuCallback("id", "Label", nullptr, 0, 1, 0, nullptr, ThePluginCore().menuContext);
    };
    EXPECT_EQ(CallStartup(), 0);
    EXPECT_EQ(host.calls.Calls(), Joined({kBlocks,
                                          kMenus,
                                          {"CountMenuItems()", kAddItem},
                                          kMenusDone,
                                          kNotifiers,
                                          kFileFormat,
                                          kBlocksDone,
                                          kTimer}));
}

TEST_F(LifeCycleTest, MenusThatFailCostTheNotifiersAndNothingElse) {
    ThePluginCore().calls.Fail("CreateMenusFromJSONBuffer", 0x9000000);
    EXPECT_EQ(CallStartup(), 0);
    EXPECT_EQ(host.calls.Calls(), Joined({kBlocks, kMenus, kMenusDone, kFileFormat, kBlocksDone, kTimer}));
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
    EXPECT_EQ(host.calls.Calls(),
              Joined({kBlocks, kMenus, kMenusDone, kNotifiers, {kFileFormat[0], kFileFormat[0]}, kBlocksDone, kTimer}));
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
    ThePluginCore().enabled = false;
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
    EXPECT_EQ(sGlobals->fileFormat, host.fileFormat.handle);
    EXPECT_EQ(sGlobals->idleTimer, host.timer.handle);
}

TEST_F(LifeCycleTest, ShutdownUndoesStartupInOrder) {
    CallStartup();
    ClearRecords();
    EXPECT_EQ(CallShutdown(), 0);

    EXPECT_EQ(PluginCoreCalls().front(), "TerminatePluginCoreInterface()");
    EXPECT_EQ(sHooksRemoved, 1);
    EXPECT_EQ(host.globals, nullptr);
    EXPECT_EQ(sGlobals, nullptr);
    EXPECT_EQ(host.LiveBlocks(), 0);
    EXPECT_TRUE(host.HeldSuites().empty());
    EXPECT_EQ(host.timer.isActive, 0);
    ASSERT_EQ(host.calls.Calls().size(), 4u + 98u + 3u);
    EXPECT_EQ(std::vector<std::string>(host.calls.Calls().begin(), host.calls.Calls().begin() + 5),
              (std::vector<std::string>{"AcquireSuite('AI Timer Suite', 5)", "GetTimerActive(0x100006001)",
                                        "SetTimerActive(0x100006001, 0)", "ReleaseSuite('AI Timer Suite', 5)",
                                        "ReleaseSuite('ATE ApplicationPaint Suite', 1)"}));
    EXPECT_EQ(std::vector<std::string>(host.calls.Calls().end() - 3, host.calls.Calls().end()),
              (std::vector<std::string>{"AcquireSuite('SP Blocks Suite', 2)", "FreeBlock()",
                                        "ReleaseSuite('SP Blocks Suite', 2)"}));
}

TEST_F(LifeCycleTest, ShutdownLogsItsEntryAtLevel0AndNoExit) {
    CallStartup();
    ClearRecords();
    CallShutdown();
    EXPECT_EQ(RecordedLog().front(), (RecordedLine{0, "Entering ShutdownPlugin"}));
    EXPECT_EQ(CountRecorded("Calling RemoveTimers from ShutdownPlugin."), 1);
    for (const std::string& line : RecordedTexts()) {
        EXPECT_EQ(line.find("Exiting ShutdownPlugin"), std::string::npos);
    }
}

TEST_F(LifeCycleTest, ShutdownTurnsSuppressionOffBeforeItRemovesTheTimers) {
    CallStartup();
    ClearRecords();
    CallShutdown();
    const std::vector<std::string> lines = RecordedTexts();
    const auto off = std::find(lines.begin(), lines.end(), "Exiting SetupIllustratorDialogSuppression(0)");
    const auto timers = std::find(lines.begin(), lines.end(), "Calling RemoveTimers from ShutdownPlugin.");
    ASSERT_NE(off, lines.end());
    ASSERT_NE(timers, lines.end());
    EXPECT_LT(off, timers);
}

TEST_F(LifeCycleTest, ShutdownReturnsThePluginCoresResult) {
    CallStartup();
    ThePluginCore().calls.Fail("TerminatePluginCoreInterface", -5);
    EXPECT_EQ(CallShutdown(), -5);
    EXPECT_EQ(host.globals, nullptr);
}

TEST_F(LifeCycleTest, ShutdownThatCannotGetTheBlocksSuiteReturnsTheHostsCodeAndForgetsTheBlock) {
    CallStartup();
    ThePluginCore().calls.Fail("TerminatePluginCoreInterface", -5);
    host.RefuseSuite("SP Blocks Suite", 123);
    EXPECT_EQ(CallShutdown(), 123);
    EXPECT_EQ(CountRecorded("ERROR:  throwing 123."), 1);
    EXPECT_EQ(host.globals, nullptr);
    EXPECT_EQ(sGlobals, nullptr);
}

TEST_F(LifeCycleTest, RefusedFreeingOfTheBlockIsIgnored) {
    CallStartup();
    host.calls.Fail("FreeBlock", 8);
    EXPECT_EQ(CallShutdown(), 0);
}

TEST_F(LifeCycleTest, TimerThatCannotBeStoppedDoesNotKeepTheRestFromBeingGivenBack) {
    CallStartup();
    host.RefuseSuite("AI Timer Suite", 42);
    EXPECT_EQ(CallShutdown(), 0);
    EXPECT_EQ(host.globals, nullptr);
    EXPECT_EQ(host.LiveBlocks(), 0);
    EXPECT_TRUE(host.HeldSuites().empty());
}

TEST_F(LifeCycleTest, SecondShutdownReturns0AtOnce) {
    CallStartup();
    CallShutdown();
    ClearRecords();
    EXPECT_EQ(CallShutdown(), 0);
    EXPECT_EQ(RecordedTexts(), std::vector<std::string>{"Entering ShutdownPlugin"});
    EXPECT_TRUE(host.calls.Calls().empty());
    EXPECT_TRUE(PluginCoreCalls().empty());
}

TEST_F(LifeCycleTest, ShutdownAppendsTheSuppressionWordsAgain) {
    CallStartup();
    EXPECT_EQ(SuppressionWordList().size(), 8u);
    CallShutdown();
    EXPECT_EQ(SuppressionWordList().size(), 16u);
}

TEST_F(LifeCycleTest, PluginCoreLearnsThePathBeforeTheHostIsAskedForAnything) {
    std::size_t hostCalls = 99;
    ThePluginCore().duringEntry["InitializePluginCoreInterface"] = [&] { hostCalls = host.calls.Calls().size(); };
    CallStartup();
    EXPECT_EQ(hostCalls, 0u);
}

TEST_F(LifeCycleTest, SuppressionIsSetUpAfterTheFileFormatAndWithinTheBlocksSuite) {
    std::vector<std::string> hostCalls;
    ThePluginCore().duringEntry["GetSettings"] = [&] { hostCalls = host.calls.Calls(); };
    CallStartup();
    ASSERT_FALSE(hostCalls.empty());
    EXPECT_EQ(hostCalls, Joined({kBlocks, kMenus, kMenusDone, kNotifiers, kFileFormat}));
}

TEST_F(LifeCycleTest, SuitesAreReleasedAfterTheTimer) {
    CallStartup();
    int timerLines = 0;
    host.duringOperation["ReleaseSuite"] = [&] {
        timerLines = std::max(timerLines, CountRecorded("Calling RemoveTimers from ShutdownPlugin.") == 1 ? 1 : -1);
        EXPECT_EQ(CountRecorded("Calling RemoveTimers from ShutdownPlugin."), 1);
        EXPECT_EQ(host.timer.isActive, 0);
    };
    CallShutdown();
    EXPECT_EQ(timerLines, 1);
}

// What the C runtime was given back; whoever frees a block must not allocate to say so.
const void* sWatchedBlock = nullptr;
bool sWatchedBlockWasFreed = false;
void (*sRealFree)(void*) = nullptr;

void WatchFree(void* block) {
    if (block != nullptr && block == sWatchedBlock) {
        sWatchedBlockWasFreed = true;
    }
    sRealFree(block);
}

TEST_F(LifeCycleTest, ShutdownDeletesTheTextOfTheGlobals) {
    CallStartup();
    sWatchedBlock = sGlobals->text;
    const ImportPatch freePatch("free", AsReplacement(WatchFree));
    sRealFree = freePatch.Original<void (*)(void*)>();
    CallShutdown();
    EXPECT_TRUE(sWatchedBlockWasFreed);
}

TEST_F(LifeCycleTest, PluginCoreThatThrowsAtShutdownDoesNotKeepTheRestFromBeingGivenBack) {
    for (const char* entry : {"TerminatePluginCoreInterface", "GetSettings"}) {
        sHooksRemoved = 0;
        CallStartup();
        ThePluginCore().throwingEntry = entry;
        SPMessageData message = host.MessageData();
        EXPECT_THROW(ShutdownPlugin(&message), ForeignException) << entry;
        ThePluginCore().throwingEntry.clear();
        EXPECT_EQ(message.globals, nullptr);
        EXPECT_EQ(sGlobals, nullptr);
        EXPECT_EQ(sHooksRemoved, 1);
        EXPECT_EQ(host.LiveBlocks(), 0);
        EXPECT_TRUE(host.HeldSuites().empty());
        EXPECT_TRUE(HasShutDown());
        host.globals = nullptr;
        AcquireSuites();
    }
}

TEST_F(LifeCycleTest, AboutHandsTheFullPathAndAZeroedBufferToThePluginCore) {
    host.currentPath = "C:/Arbeit/Pl\xC3\xA4ne.ai";
    ThePluginCore().calls.Fail("InvokeCommandDialog", 17);
    SPMessageData message = host.MessageData();
    EXPECT_EQ(AboutPlugin(&message), 17);
    EXPECT_EQ(PluginCoreCalls(),
              std::vector<std::string>{"InvokeCommandDialog('C:/Arbeit/Pl\xC3\xA4ne.ai', 256 zeros)"});
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
