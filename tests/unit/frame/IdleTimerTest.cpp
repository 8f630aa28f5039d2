#include "frame/IdleTimer.h"

#include "doubles/common/AllocationFaults.h"
#include "support/clock/FakeClock.h"
#include "support/plugplug/FakePlugPlug.h"
#include "unit/frame/FrameFixture.h"

namespace {

using Calls = std::vector<std::string>;
using Log = std::vector<RecordedLine>;

const std::string kAcquire = "AcquireSuite('AI Timer Suite', 5)";
const std::string kRelease = "ReleaseSuite('AI Timer Suite', 5)";

class IdleTimerTest : public StartedTest {
  protected:
    // As before the start-up.
    void ForgetTimer() {
        sGlobals->idleTimer = nullptr;
        host.model.timers.Remove(host.Timer());
    }
    std::string IsActive() const { return "GetTimerActive(" + HandleText(host.Timer()) + ")"; }
    std::string Stop() const { return "SetTimerActive(" + HandleText(host.Timer()) + ", 0)"; }

    std::int32_t Add() {
        SPInterfaceMessage startup{host.MessageData()};
        return AddTimers(&startup);
    }
    static Log Framed(const std::string& operation, const Calls& inner) {
        Log lines = {{1, "Entering " + operation + " "}};
        for (const std::string& line : inner) {
            lines.push_back({0, line});
        }
        lines.push_back({-1, "Exiting " + operation + " "});
        return lines;
    }
};

// --- AddTimers ------------------------------------------------------------------------------------------------------

TEST_F(IdleTimerTest, TimerOfTheShortestPeriodIsAddedAndItsHandleKept) {
    ForgetTimer();
    EXPECT_EQ(Add(), 0);
    EXPECT_EQ(host.calls.Calls(), (Calls{kAcquire, "AddTimer('Quorvel AIPlugin Timer', 1)", kRelease}));
    EXPECT_NE(sGlobals->idleTimer, nullptr);
    EXPECT_EQ(sGlobals->idleTimer, host.Timer());
    EXPECT_EQ(RecordedLog(), Framed("AddTimers", {}));
}

TEST_F(IdleTimerTest, RefusedTimerIsTheResultAndTheSuiteGoesBack) {
    ForgetTimer();
    host.calls.Fail("AddTimer", 1296385101);
    EXPECT_EQ(Add(), 1296385101);
    EXPECT_EQ(host.calls.Calls(), (Calls{kAcquire, "AddTimer('Quorvel AIPlugin Timer', 1)", kRelease}));
    EXPECT_EQ(sGlobals->idleTimer, nullptr);
    EXPECT_EQ(RecordedLog(), Framed("AddTimers", {"ERROR:  throwing 1296385101."}));
}

TEST_F(IdleTimerTest, RefusedSuiteIsTheResultOfAddingAndNothingIsReleased) {
    host.RefuseSuite("AI Timer Suite", 42);
    EXPECT_EQ(Add(), 42);
    EXPECT_EQ(host.calls.Calls(), Calls{kAcquire});
    EXPECT_EQ(RecordedLog(), Framed("AddTimers", {"ERROR:  throwing 42."}));
}

// --- RemoveTimers ---------------------------------------------------------------------------------------------------

TEST_F(IdleTimerTest, ActiveTimerIsStoppedAndItsHandleStays) {
    EXPECT_EQ(RemoveTimers(), 0);
    EXPECT_EQ(host.calls.Calls(), (Calls{kAcquire, IsActive(), Stop(), kRelease}));
    EXPECT_EQ(host.TimerIsActive(), 0);
    EXPECT_EQ(sGlobals->idleTimer, host.Timer());
    EXPECT_EQ(RecordedLog(), Framed("RemoveTimers", {}));
}

TEST_F(IdleTimerTest, TimerIsActiveByAnyNonZeroFlag) {
    host.model.timers.Find(host.Timer())->active = 0x100;
    EXPECT_EQ(RemoveTimers(), 0);
    EXPECT_EQ(host.calls.Calls(), (Calls{kAcquire, IsActive(), Stop(), kRelease}));
}

TEST_F(IdleTimerTest, TimerThatIsStoppedAlreadyIsLeftAlone) {
    host.model.timers.Find(host.Timer())->active = 0;
    EXPECT_EQ(RemoveTimers(), 0);
    EXPECT_EQ(host.calls.Calls(), (Calls{kAcquire, IsActive(), kRelease}));
}

TEST_F(IdleTimerTest, WithoutATimerTheSuiteIsAcquiredAndReleasedAndTheResultIs0) {
    ForgetTimer();
    EXPECT_EQ(RemoveTimers(), 0);
    EXPECT_EQ(host.calls.Calls(), (Calls{kAcquire, kRelease}));
    EXPECT_EQ(RecordedLog(), Framed("RemoveTimers", {}));
}

TEST_F(IdleTimerTest, WithoutAGlobalsBlockThereIsNoTimer) {
    PluginGlobals* const globals = sGlobals;
    sGlobals = nullptr;
    EXPECT_EQ(RemoveTimers(), 0);
    EXPECT_EQ(host.calls.Calls(), (Calls{kAcquire, kRelease}));
    sGlobals = globals;
}

TEST_F(IdleTimerTest, RefusedQuestionIsTheResultAndTheTimerIsNotStopped) {
    host.calls.FailAfterWork("GetTimerActive", 7);
    EXPECT_EQ(RemoveTimers(), 7);
    EXPECT_EQ(host.calls.Calls(), (Calls{kAcquire, IsActive(), kRelease}));
    EXPECT_EQ(RecordedLog(), Framed("RemoveTimers", {"ERROR:  throwing 7."}));
}

TEST_F(IdleTimerTest, RefusedStopIsTheResult) {
    host.calls.Fail("SetTimerActive", 8);
    EXPECT_EQ(RemoveTimers(), 8);
    EXPECT_EQ(host.calls.Calls(), (Calls{kAcquire, IsActive(), Stop(), kRelease}));
    EXPECT_EQ(RecordedLog(), Framed("RemoveTimers", {"ERROR:  throwing 8."}));
}

TEST_F(IdleTimerTest, RefusedSuiteIsTheResultOfRemoving) {
    host.RefuseSuite("AI Timer Suite", 42);
    EXPECT_EQ(RemoveTimers(), 42);
    EXPECT_EQ(host.calls.Calls(), Calls{kAcquire});
    EXPECT_EQ(RecordedLog(), Framed("RemoveTimers", {"ERROR:  throwing 42."}));
}

TEST_F(IdleTimerTest, SuiteGoesBackBeforeTheExitIsLogged) {
    ForgetTimer();
    Log whenReleased;
    host.calls.During("ReleaseSuite", [&] { whenReleased = RecordedLog(); });
    Add();
    EXPECT_EQ(whenReleased, (Log{{1, "Entering AddTimers "}}));
    ClearRecordedLog();
    RemoveTimers();
    EXPECT_EQ(whenReleased, (Log{{1, "Entering RemoveTimers "}}));
}

// --- the tick -------------------------------------------------------------------------------------------------------

const Calls kWork = {"IdleEvent()", "ProcessPanelMessages(1)"};
const Calls kCheckedWork = {"PluginIsEnabled(1, 0)", "IdleEvent()", "ProcessPanelMessages(1)"};

// Ticks arrive through PluginMain; there is no panel to talk to unless a test makes one.
class IdleTickTest : public IdleTimerTest {
  protected:
    IdleTickTest() { ThePluginCore().calls.Show("PluginIsEnabled"); }

    std::int32_t Tick() {
        ClearRecords();
        AITimerMessage message{host.MessageData(), host.Timer()};
        return Send("AI Timer", "AI Go", &message.d);
    }

    const FakeClock clock{1700000000};
};

TEST_F(IdleTickTest, FirstTickChecksThenLetsThePluginCoreWork) {
    EXPECT_EQ(Tick(), 0);
    EXPECT_EQ(PluginCoreCalls(), kCheckedWork);
    EXPECT_EQ(host.calls.Calls(), Calls{});
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(IdleTickTest, TickTakesNoMemoryOnceThePanelIsReached) {
    const LoadablePlugPlug plugPlug;
    Tick();
    FakeClock::Advance(10);
    for (const Calls& work : {kCheckedWork, kWork}) {
        ClearRecords();
        AITimerMessage message{host.MessageData(), host.Timer()};
        const std::size_t before = AllocationsMade();
        PluginMain("AI Timer", "AI Go", &message.d);
        EXPECT_EQ(AllocationsMade(), before);
        EXPECT_EQ(PluginCoreCalls(), work);
        EXPECT_TRUE(RecordedLog().empty());
    }
}

TEST_F(IdleTickTest, TickWithinNineSecondsOfTheCheckDoesNotCheck) {
    Tick();
    for (int second = 1; second <= 9; ++second) {
        FakeClock::Advance(1);
        EXPECT_EQ(Tick(), 0);
        EXPECT_EQ(PluginCoreCalls(), kWork) << second;
    }
}

TEST_F(IdleTickTest, TickTenSecondsAfterTheCheckChecksAgainAndTheTimeRunsFromThere) {
    Tick();
    FakeClock::Advance(10);
    Tick();
    EXPECT_EQ(PluginCoreCalls(), kCheckedWork);
    FakeClock::Advance(9);
    Tick();
    EXPECT_EQ(PluginCoreCalls(), kWork);
    FakeClock::Advance(1);
    Tick();
    EXPECT_EQ(PluginCoreCalls(), kCheckedWork);
}

TEST_F(IdleTickTest, TicksWithoutACheckDoNotPutTheNextCheckOff) {
    Tick();
    FakeClock::Advance(6);
    Tick();
    FakeClock::Advance(4);
    Tick();
    EXPECT_EQ(PluginCoreCalls(), kCheckedWork);
}

TEST_F(IdleTickTest, FirstCheckCountsFrom1970) {
    FakeClock::Set(9);
    Tick();
    EXPECT_EQ(PluginCoreCalls(), kWork);
    FakeClock::Set(10);
    Tick();
    EXPECT_EQ(PluginCoreCalls(), kCheckedWork);
}

TEST_F(IdleTickTest, TimeIsHeldIn64Bits) {
    constexpr std::int64_t kAfter2038 = 3000000000;
    FakeClock::Set(kAfter2038);
    Tick();
    EXPECT_EQ(PluginCoreCalls(), kCheckedWork);
    FakeClock::Set(kAfter2038 + 9);
    Tick();
    EXPECT_EQ(PluginCoreCalls(), kWork);
    FakeClock::Set(kAfter2038 + 10);
    Tick();
    EXPECT_EQ(PluginCoreCalls(), kCheckedWork);
}

TEST_F(IdleTickTest, DisabledPluginCoreStopsTheTimerAndStillWorksInThisTick) {
    ThePluginCore().script["PluginIsEnabled"].enabled = 0;
    Calls hostCallsWhenWorking;
    ThePluginCore().script["IdleEvent"].during = [&] { hostCallsWhenWorking = host.calls.Calls(); };
    EXPECT_EQ(Tick(), 0);
    EXPECT_EQ(PluginCoreCalls(), kCheckedWork);
    const Calls stopping = {kAcquire, IsActive(), Stop(), kRelease};
    EXPECT_EQ(hostCallsWhenWorking, stopping);
    EXPECT_EQ(host.calls.Calls(), stopping);
    EXPECT_EQ(host.TimerIsActive(), 0);
    EXPECT_EQ(RecordedLog(), Framed("RemoveTimers", {}));
}

TEST_F(IdleTickTest, DisabledPluginCoreIsNotNoticedBetweenTheChecks) {
    Tick();
    ThePluginCore().script["PluginIsEnabled"].enabled = 0;
    FakeClock::Advance(9);
    Tick();
    EXPECT_EQ(host.calls.Calls(), Calls{});
    FakeClock::Advance(1);
    Tick();
    EXPECT_EQ(host.TimerIsActive(), 0);
}

TEST_F(IdleTickTest, PluginCoreThatIsEnabledAgainDoesNotStartTheTimer) {
    ThePluginCore().script["PluginIsEnabled"].enabled = 0;
    Tick();
    ThePluginCore().script["PluginIsEnabled"].enabled = 1;
    FakeClock::Advance(10);
    Tick();
    EXPECT_EQ(host.calls.Calls(), Calls{});
    EXPECT_EQ(host.TimerIsActive(), 0);
}

TEST_F(IdleTickTest, TimerThatCannotBeStoppedDoesNotReachTheResult) {
    ThePluginCore().script["PluginIsEnabled"].enabled = 0;
    host.RefuseSuite("AI Timer Suite", 42);
    EXPECT_EQ(Tick(), 0);
    EXPECT_EQ(PluginCoreCalls(), kCheckedWork);
}

TEST_F(IdleTickTest, AnswersOfThePluginCoreDoNotCount) {
    ThePluginCore().script.Fail("IdleEvent", 5);
    ThePluginCore().script.Fail("ProcessPanelMessages", 6);
    EXPECT_EQ(Tick(), 0);
    EXPECT_EQ(PluginCoreCalls(), kCheckedWork);
}

TEST_F(IdleTickTest, CheckThatThrowsEndsTheTickAndIsNotRepeatedByTheNextOne) {
    ThePluginCore().script["PluginIsEnabled"].throws = doubles::Throw::kForeignException;
    EXPECT_EQ(Tick(), 0);
    EXPECT_EQ(PluginCoreCalls(), Calls{"PluginIsEnabled(1, 0)"});
    EXPECT_EQ(RecordedLog(), (Log{{0, "Unhandled exception in Brightbox plugin."}}));
    FakeClock::Advance(9);
    EXPECT_EQ(Tick(), 0);
    EXPECT_EQ(PluginCoreCalls(), kWork);
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(IdleTickTest, ListenerIsRegisteredBetweenTheCheckAndTheWorkAndOnlyOnce) {
    const LoadablePlugPlug plugPlug;
    EXPECT_EQ(Tick(), 0);
    EXPECT_EQ(PluginCoreCalls(), (Calls{"PluginIsEnabled(1, 0)", kRegisterPlugPlug, "GetSocketPort(0)", "IdleEvent()",
                                        "ProcessPanelMessages(1)"}));
    EXPECT_EQ(Tick(), 0);
    EXPECT_EQ(PluginCoreCalls(), kWork);
    EXPECT_EQ(ThePlugPlug().calls.Count("LoadLibraryW"), 1);
    EXPECT_EQ(ThePlugPlug().calls.Count("PlugPlugAddEventListener"), 1);
}

TEST_F(IdleTickTest, ListenerThatCouldNotBeRegisteredIsTriedAgainByEveryTickAndDoesNotStopTheWork) {
    const LoadablePlugPlug plugPlug;
    ThePlugPlug().script.Fail("LoadLibraryW", 1, 1);
    ThePlugPlug().script.Fail("LoadLibraryW", 1, 2);
    Tick();
    EXPECT_EQ(PluginCoreCalls(), kCheckedWork);
    Tick();
    EXPECT_EQ(PluginCoreCalls(), kWork);
    Tick();
    EXPECT_EQ(PluginCoreCalls(),
              (Calls{kRegisterPlugPlug, "GetSocketPort(0)", "IdleEvent()", "ProcessPanelMessages(1)"}));
    EXPECT_EQ(ThePlugPlug().calls.Count("LoadLibraryW"), 3);
}

TEST_F(IdleTickTest, ExceptionOnTheWayToThePanelDoesNotKeepThePluginCoreFromItsWork) {
    const LoadablePlugPlug plugPlug;
    ThePluginCore().script["RegisterPlugPlug"].throws = doubles::Throw::kForeignException;
    EXPECT_EQ(Tick(), 0);
    EXPECT_EQ(PluginCoreCalls(),
              (Calls{"PluginIsEnabled(1, 0)", kRegisterPlugPlug, "IdleEvent()", "ProcessPanelMessages(1)"}));
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(IdleTickTest, TickToAPluginThatIsNotStartedDoesNothing) {
    SPMessageData message = host.MessageData();
    message.globals = nullptr;
    ClearRecords();
    EXPECT_EQ(PluginMain("AI Timer", "AI Go", &message), 0);
    EXPECT_EQ(PluginCoreCalls(), Calls{});
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(IdleTickTest, TickInsideAnotherMessageIsRefused) {
    int answer = 0;
    ThePluginCore().script["IdleEvent"].during = [&] {
        SPMessageData nested = host.MessageData();
        answer = PluginMain("AI Timer", "AI Go", &nested);
    };
    EXPECT_EQ(Tick(), 0);
    EXPECT_EQ(answer, 1);
    EXPECT_EQ(PluginCoreCalls(), kCheckedWork);
}

}  // namespace
