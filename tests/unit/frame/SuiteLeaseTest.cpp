#include "frame/SuiteLease.h"

#include <cstring>

#include "frame/base/Suites.h"
#include "support/plugincore/MissingPluginCore.h"
#include "unit/frame/FrameFixture.h"

namespace {

class SuiteLeaseTest : public FrameTest {
  protected:
    SuiteLeaseTest() { sBasicSuite = TestHost::Basic(); }

    int Acquired() { return host.calls.Count("AcquireSuite"); }

    SuiteLease lease;
};

TEST_F(SuiteLeaseTest, AnyMessageButAClosingOneAcquiresTheTableOnce) {
    lease.BeginMessage(MessageKind::kClosingWithoutRun);
    EXPECT_EQ(Acquired(), 0);
    lease = {};
    lease.BeginMessage(MessageKind::kOrdinary);
    EXPECT_EQ(Acquired(), 98);
    lease.BeginMessage(MessageKind::kStartup);
    lease.BeginMessage(MessageKind::kOrdinary);
    EXPECT_EQ(Acquired(), 98);
    lease.EndRun();
}

TEST_F(SuiteLeaseTest, ClosingMessageGivesTheTableBackAndClosesTheLease) {
    lease.BeginMessage(MessageKind::kOrdinary);
    lease.BeginMessage(MessageKind::kClosingWithoutRun);
    EXPECT_TRUE(host.HeldSuites().empty());
    lease.BeginMessage(MessageKind::kOrdinary);
    EXPECT_TRUE(host.HeldSuites().empty());
    lease.BeginMessage(MessageKind::kStartup);
    EXPECT_EQ(host.HeldSuites().size(), 98u);
    lease.EndRun();
}

TEST_F(SuiteLeaseTest, EndOfARunReleasesTheTableAndClosesTheLease) {
    lease.BeginMessage(MessageKind::kStartup);
    lease.EndRun();
    EXPECT_TRUE(host.HeldSuites().empty());
    lease.BeginMessage(MessageKind::kOrdinary);
    lease.BeginMessage(MessageKind::kClosingWithoutRun);
    EXPECT_EQ(Acquired(), 98);
}

TEST_F(SuiteLeaseTest, EndOfARunCountsDownATableThatWasNeverHeld) {
    host.RefuseSuite("ATE ApplicationPaint Suite", 3);
    lease.BeginMessage(MessageKind::kStartup);
    EXPECT_EQ(Acquired(), 1);
    lease.EndRun();
    // Below 0: nothing is ever acquired again.
    host.calls.ForgetEvents();
    lease.BeginMessage(MessageKind::kStartup);
    EXPECT_EQ(Acquired(), 1);
}

TEST_F(SuiteLeaseTest, ClosingMessageLeavesTheCountOfATableThatIsNotHeldAlone) {
    host.RefuseSuite("ATE ApplicationPaint Suite", 3);
    lease.BeginMessage(MessageKind::kStartup);
    lease.BeginMessage(MessageKind::kClosingWithoutRun);
    host.calls.ForgetEvents();
    lease.BeginMessage(MessageKind::kStartup);
    EXPECT_TRUE(SuitesAreHeld());
    lease.EndRun();
}

// --- every order of messages ----------------------------------------------------------------------------------------

// A basic suite that only counts what is held: the host's own records each of the millions of calls.
SPErr QuickAcquire(const char* name, std::int32_t, const void** table) {
    simhost::OfferedSuite* const suite = simhost::Host().suites.Find(name);
    ++suite->held;
    *table = suite->slots.data();
    return 0;
}
SPErr QuickRelease(const char* name, std::int32_t) {
    --simhost::Host().suites.Find(name)->held;
    return 0;
}
SPBoolean QuickIsEqual(const char* token1, const char* token2) { return std::strcmp(token1, token2) == 0 ? 2 : 0; }
const SPBasicSuite kQuickBasicSuite{QuickAcquire, QuickRelease, QuickIsEqual, {}};

struct Sender {
    TestHost& host;

    std::int32_t Plain(const char* caller, const char* selector) const {
        SPInterfaceMessage message{host.MessageData()};
        message.d.basic = &kQuickBasicSuite;
        const std::int32_t answer = PluginMain(caller, selector, &message.d);
        host.globals = message.d.globals;
        return answer;
    }
    void ApplicationShutdown() const {
        const auto* const globals = static_cast<PluginGlobals*>(host.globals);
        AINotifierMessage message{host.MessageData(), globals == nullptr ? nullptr : globals->applicationShutdown,
                                  "AI Application Shutdown Notifier", nullptr};
        message.d.basic = &kQuickBasicSuite;
        PluginMain("AI Notifier", "AI Notify", &message.d);
        host.globals = message.d.globals;
    }
};

enum Action { kStartupUsable, kStartupRefused, kAbout, kOther, kTellsShutdown, kShutdown, kUnload, kActionCount };

constexpr int kPairs = kActionCount * kActionCount;

// By the first two messages, so that no single case takes long, on a busy machine either.
class EveryOrderTest : public FrameTest, public testing::WithParamInterface<int> {
  protected:
    EveryOrderTest() { LoadFakePluginCore(); }

    void Perform(Action action) {
        switch (action) {
            case kStartupUsable:
            case kStartupRefused:
                ThePluginCore().script["GetAPIVersion"].result = action == kStartupUsable ? 0 : 3;
                sender.Plain("SP Interface", "Startup");
                break;
            case kAbout:
                sender.Plain("SP Interface", "About");
                break;
            case kOther:
                sender.Plain("SP Access", "Reload");
                break;
            case kTellsShutdown:
                sender.ApplicationShutdown();
                break;
            case kShutdown:
                sender.Plain("SP Interface", "Shutdown");
                ExpectNothingHeld("shut-down");
                break;
            case kUnload:
                if (sender.Plain("SP Access", "Unload") == 0) {
                    ExpectNothingHeld("an unload that is allowed");
                }
                break;
            default:
                FAIL();
        }
    }

    void ExpectNothingHeld(const char* after) {
        EXPECT_EQ(host.HeldSuites().size(), 0u) << "after " << after;
        EXPECT_EQ(host.LiveBlocks(), 0) << "after " << after;
    }

    // Plays the order with that number in the base of the actions, then has the host quit.
    void Play(std::uint64_t number, std::size_t length) {
        std::string order;
        for (std::size_t i = 0; i < length; ++i, number /= kActionCount) {
            order += std::to_string(number % kActionCount);
            SCOPED_TRACE(order);
            Perform(static_cast<Action>(number % kActionCount));
        }
        SCOPED_TRACE(order + ", then the end");
        Perform(kShutdown);
        Perform(kUnload);
        EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 0);
        ClearRecords();
    }

    Sender sender{host};
};

TEST_P(EveryOrderTest, OfUpToSixMessagesLeavesNothingBehind) {
    const auto first = static_cast<std::uint64_t>(GetParam());
    if (first < kActionCount) {
        Play(first, 1);
    }
    std::uint64_t orders = 1;
    for (std::size_t length = 2; length <= 6; ++length) {
        for (std::uint64_t number = 0; number < orders && !HasFailure(); ++number) {
            Play(first + number * kPairs, length);
        }
        orders *= kActionCount;
    }
    EXPECT_EQ(orders, 16807u);
}

INSTANTIATE_TEST_SUITE_P(FirstMessages, EveryOrderTest, testing::Range(0, kPairs));

// --- the about box --------------------------------------------------------------------------------------------------

int WINAPI PressOkInBox(HWND, LPCWSTR, LPCWSTR, UINT) { return IDOK; }

class AboutAtAnyTimeTest : public FrameTest {
  protected:
    AboutAtAnyTimeTest() {
        LoadFakePluginCore();
        ThePluginCore().script["InvokeCommandDialog"].result = 17;
    }

    std::int32_t About() { return Send("SP Interface", "About"); }
};

TEST_F(AboutAtAnyTimeTest, IsNotTheLibrarysFirstCall) {
    EXPECT_EQ(About(), 0);
    EXPECT_TRUE(PluginCoreCalls().empty());
    EXPECT_EQ(CountRecorded("Exiting AboutPlugin"), 1);
}

TEST_F(AboutAtAnyTimeTest, AsksBetweenAStartUpThatFoundTheLibraryUsableAndShutDown) {
    Startup();
    EXPECT_EQ(About(), 17);
    Send("SP Interface", "Shutdown");
    ClearRecords();
    EXPECT_EQ(About(), 0);
    EXPECT_TRUE(PluginCoreCalls().empty());
    Startup();
    EXPECT_EQ(About(), 17);
}

TEST_F(AboutAtAnyTimeTest, EndsQuietlyWhenTheSuitesAreGivenBack) {
    Startup();
    Send("SP Interface", "Shutdown");
    ClearRecords();
    EXPECT_EQ(About(), 0);
    EXPECT_EQ(CountRecorded("Exiting AboutPlugin"), 1);
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 0);
    EXPECT_TRUE(host.calls.Calls().empty());
}

TEST_F(AboutAtAnyTimeTest, DoesNotAskALibraryThatTurnsUpAfterAStartUpWithoutOne) {
    {
        const MissingPluginCore missing;
        const ImportPatch box("MessageBoxW", AsReplacement(PressOkInBox));
        Startup();
    }
    LoadFakePluginCore();
    ClearRecords();
    EXPECT_EQ(About(), 0);
    EXPECT_TRUE(PluginCoreCalls().empty());
}

TEST_F(AboutAtAnyTimeTest, DoesNotAskAfterAnUnloadThatIsAllowed) {
    host.calls.Fail("AllocateBlock", 1);
    Startup();
    EXPECT_EQ(About(), 17);
    EXPECT_EQ(Send("SP Access", "Unload"), 0);
    ClearRecords();
    EXPECT_EQ(About(), 0);
    EXPECT_TRUE(PluginCoreCalls().empty());
}

TEST_F(AboutAtAnyTimeTest, DoesNotAskALibraryThatRefusesTheVersion) {
    ThePluginCore().script["GetAPIVersion"].result = 3;
    Startup();
    ClearRecords();
    EXPECT_EQ(About(), 0);
    EXPECT_TRUE(PluginCoreCalls().empty());
}

TEST_F(AboutAtAnyTimeTest, DoesNotAskALibraryThatNowRefusesTheVersion) {
    // A start-up that fails behind the version check, and one that fails at it.
    host.calls.Fail("AllocateBlock", 1);
    Startup();
    EXPECT_EQ(About(), 17);
    ThePluginCore().script["GetAPIVersion"].result = 3;
    Startup();
    EXPECT_EQ(About(), 0);
}

TEST_F(AboutAtAnyTimeTest, StartUpThatTheMenusEndedIsNotRepeatedBeforeShutDown) {
    host.RefuseSuite("AI Menu Suite", 42);
    EXPECT_EQ(Startup(), 42);
    host.EndFaults();
    ClearRecords();
    EXPECT_EQ(Startup(), 0);
    EXPECT_TRUE(PluginCoreCalls().empty());
    Send("SP Interface", "Shutdown");
    EXPECT_EQ(Startup(), 0);
    EXPECT_EQ(host.calls.Count("AddTimer"), 1);
}

TEST_F(AboutAtAnyTimeTest, StartUpOfAStartedPluginChangesNothing) {
    Startup();
    void* const globals = host.globals;
    ClearRecords();
    EXPECT_EQ(Startup(), 0);
    EXPECT_EQ(host.globals, globals);
    EXPECT_TRUE(host.calls.Calls().empty());
    EXPECT_TRUE(PluginCoreCalls().empty());
}

}  // namespace
