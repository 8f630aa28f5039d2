#include "frame/Dispatch.h"

#include "doubles/common/ForeignException.h"
#include "frame/base/Suites.h"
#include "unit/frame/FrameFixture.h"

namespace {

class DispatchTest : public StartedTest {
  protected:
    std::int32_t NotifyOpened() {
        return Notify(&PluginGlobals::documentOpened, "AI Document Opened Notifier", document);
    }
};

TEST_F(DispatchTest, MessageThatArrivesInsideAnotherIsRefusedWith1AndChangesNothing) {
    int answer = 0;
    SPMessageData nested{};
    host.calls.During("GetDocumentFileSpecification", [&] {
        const SPBasicSuite* const basic = sBasicSuite;
        answer = DispatchGuarded("AI Menu", "AI Go", &nested);
        EXPECT_EQ(sBasicSuite, basic);
        EXPECT_NE(sCurrentMessage, &nested);
    });
    EXPECT_EQ(NotifyOpened(), 0);
    EXPECT_EQ(answer, 1);
}

TEST_F(DispatchTest, ExceptionOfAHandlerIsLoggedAndAnswered0AndTheNextMessageIsHandled) {
    host.calls.During("GetDocumentFileSpecification", [] { throw std::runtime_error("from a handler"); });
    EXPECT_EQ(NotifyOpened(), 0);
    const std::vector<RecordedLine> log = RecordedLog();
    EXPECT_EQ(std::count(log.begin(), log.end(), RecordedLine{0, "Unhandled exception in Brightbox plugin."}), 1);
    EXPECT_TRUE(PluginCoreCalls().empty());

    host.calls.ForgetEvents();
    ClearRecords();
    EXPECT_EQ(NotifyOpened(), 0);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 0);
    EXPECT_EQ(PluginCoreCalls().size(), 1u);
}

TEST_F(DispatchTest, ThrownIntegerThatNobodyCaughtIsAnswered0) {
    host.calls.During("GetDocumentFileSpecification", [] { throw 1234; });
    EXPECT_EQ(NotifyOpened(), 0);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 1);
}

TEST_F(DispatchTest, ExceptionOfThePluginCoreIsStoppedAndOurOwnFramesUnwind) {
    ThePluginCore().script["HandleOpenExistingDocument"].throws = doubles::Throw::kForeignException;
    host.currentPath = "C:/a.ai";
    EXPECT_EQ(NotifyOpened(), 0);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 1);

    ThePluginCore().script["HandleOpenExistingDocument"].throws = doubles::Throw::kNothing;
    ClearRecords();
    EXPECT_EQ(NotifyOpened(), 0);
    EXPECT_EQ(PluginCoreCalls().size(), 1u);
    EXPECT_EQ(host.LiveStrings(), 0);
    EXPECT_EQ(host.LivePaths(), 0);
}

TEST_F(DispatchTest, ExceptionOfAnotherCompilerOutOfTheHostIsStoppedToo) {
    host.calls.During("GetDocumentFileSpecification", ThrowLikeAnotherCompiler);
    EXPECT_EQ(NotifyOpened(), 0);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 1);
    host.calls.ForgetEvents();
    EXPECT_EQ(NotifyOpened(), 0);
    EXPECT_EQ(PluginCoreCalls().size(), 1u);
}

TEST_F(DispatchTest, MessageWithoutABasicSuiteIsAnswered0AfterOneLine) {
    SPMessageData message = host.MessageData();
    message.basic = nullptr;
    EXPECT_EQ(DispatchGuarded("SP Interface", "Startup", &message), 0);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{{0, "- no basic suite available in message"}}));
    EXPECT_TRUE(host.calls.Calls().empty());

    // The flag is clear again.
    EXPECT_EQ(Send("SP Interface", "Nonsense"), 0);
}

TEST_F(DispatchTest, NullMessageIsABadParameterAndLeavesTheFlagClear) {
    EXPECT_EQ(DispatchGuarded("AI Menu", "AI Go", nullptr), kBadParameterErr);
    EXPECT_EQ(DispatchGuarded("AI Menu", "AI Go", nullptr), kBadParameterErr);
}

TEST_F(DispatchTest, MessageBasicSuiteAndGlobalsAreStored) {
    SPMessageData message = host.MessageData();
    DispatchGuarded("AI Menu", "Nonsense", &message);
    EXPECT_EQ(sCurrentMessage, &message);
    EXPECT_EQ(sBasicSuite, TestHost::Basic());
    EXPECT_EQ(sGlobals, host.globals);
}

TEST_F(DispatchTest, MissingSuiteCostsTheMessageAndNotTheHost) {
    host.DropSuites();
    host.ExpectBroken(Rule::kSuiteLeak);
    EXPECT_EQ(NotifyOpened(), 0);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 1);
    EXPECT_TRUE(PluginCoreCalls().empty());
}

TEST_F(DispatchTest, SuiteThatTheHostDoesNotOfferCostsTheStartupAndNotTheHost) {
    Send("SP Interface", "Shutdown");
    host.RefuseSuite("AI Document Suite", 42);
    // The rows before the refused one are acquired anew by each message.
    host.ExpectBroken(Rule::kSuiteLeak);
    ClearRecords();
    EXPECT_EQ(Startup(), 0);
    EXPECT_EQ(CountRecorded("Error 0x0000002a acquiring suite 'AI Document Suite', version 16"), 1);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 1);
    EXPECT_EQ(host.calls.Calls().back(), "ReleaseSuite('SP Blocks Suite', 2)");
    EXPECT_THAT(host.calls.Calls(), testing::Not(testing::Contains(testing::StartsWith("AddNotifier"))));

    Send("SP Interface", "Shutdown");
    EXPECT_EQ(host.globals, nullptr);
    EXPECT_EQ(host.LiveBlocks(), 0);
}

using DispatchFromTheStartTest = FrameTest;

TEST_F(DispatchFromTheStartTest, SuitesAreAcquiredWithTheFirstMessageWhateverItIs) {
    Send("SP Access", "Reload");
    EXPECT_TRUE(SuitesAreHeld());
    EXPECT_EQ(host.calls.Count("AcquireSuite"), 98);
    Send("SP Access", "Reload");
    EXPECT_EQ(host.calls.Count("AcquireSuite"), 98);
}

TEST_F(DispatchFromTheStartTest, ClosingMessagesAcquireNothing) {
    EXPECT_EQ(Send("SP Interface", "Shutdown"), 0);
    EXPECT_EQ(Send("SP Access", "Unload"), 0);
    EXPECT_TRUE(host.calls.Calls().empty());
}

TEST_F(DispatchFromTheStartTest, MessageAfterShutdownAcquiresNothingUntilTheNextStartup) {
    LoadFakePluginCore();
    Startup();
    Send("SP Interface", "Shutdown");
    host.calls.Clear();
    EXPECT_EQ(Send("AI Notifier", "Hello"), 0);
    EXPECT_EQ(Send("SP Interface", "Shutdown"), 0);
    EXPECT_TRUE(host.calls.Calls().empty());
    EXPECT_EQ(Startup(), 0);
    EXPECT_TRUE(SuitesAreHeld());
    EXPECT_NE(host.globals, nullptr);
}

TEST_F(DispatchFromTheStartTest, TableThatIsNotHeldIsTriedOnEveryMessageWhileThePluginRuns) {
    LoadFakePluginCore();
    host.RefuseSuite("AI Document Suite", 9);
    host.ExpectBroken(Rule::kSuiteLeak);
    Startup();
    host.calls.Clear();
    Send("SP Access", "Unload");
    // The table twice, and the blocks suite of the start-up, which the missing suite ends.
    EXPECT_EQ(host.calls.Count("AcquireSuite"), 2 * 98 + 1);
}

TEST_F(DispatchFromTheStartTest, EverythingIsGivenBackAfterTheHostsClosingMessages) {
    LoadFakePluginCore();
    Startup();
    auto* const globals = static_cast<PluginGlobals*>(host.globals);
    AINotifierMessage message{host.MessageData(), globals->applicationShutdown, "AI Application Shutdown Notifier",
                              nullptr};
    EXPECT_EQ(Send("AI Notifier", "AI Notify", &message.d), 0);
    EXPECT_EQ(Send("SP Interface", "Shutdown"), 0);
    EXPECT_EQ(Send("SP Access", "Unload"), 0);
    EXPECT_TRUE(host.HeldSuites().empty());
    EXPECT_EQ(host.LiveBlocks(), 0);
}

}  // namespace
