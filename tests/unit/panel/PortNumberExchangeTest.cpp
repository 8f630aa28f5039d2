#include "panel/PortNumberExchange.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "panel/PlugPlugBridge.h"
#include "support/fakes/FakePluginCore.h"
#include "support/fakes/FakePlugPlug.h"
#include "support/fakes/MemoryRunningOut.h"
#include "support/fakes/MissingPluginCore.h"
#include "support/ForeignExceptionGuard.h"
#include "support/RecordingLogSink.h"
#include "support/ThrowLikeAnotherCompiler.h"

namespace {

using Calls = std::vector<std::string>;

const std::string kLoad = "LoadLibraryW()";
const std::string kAdd = "PlugPlugAddEventListener('com.quorvel.portnumberrequest', null)";

std::string Response(const std::string& port) {
    return "PlugPlugDispatchEvent('com.quorvel.portnumberresponse', 1, 'test', null, '<payload><number>" + port +
           "</number></payload>')";
}

const Calls& BusCalls() { return ThePlugPlug().calls.Calls(); }
const Calls& PluginCoreCalls() { return ThePluginCore().calls.Calls(); }

// A PluginCore that listens on port 49152.
class PortNumberExchangeTest : public testing::Test {
  protected:
    PortNumberExchangeTest() {
        LoadFakePluginCore();
        ThePluginCore().socketPort = 49152;
        ClearRecordedLog();
    }
    // Every failure is silent, and every success too.
    void TearDown() override { EXPECT_TRUE(RecordedLog().empty()); }

    const LoadablePlugPlug loadable;
};

// The same, listening already.
class RegisteredPortNumberExchangeTest : public PortNumberExchangeTest {
  protected:
    RegisteredPortNumberExchangeTest() {
        RegisterPortNumberListener();
        ThePlugPlug().calls.Clear();
        ThePluginCore().calls.Clear();
    }
};

// --- RegisterPortNumberListener -------------------------------------------------------------------------------------

TEST_F(PortNumberExchangeTest, ListenerIsAddedThenThePluginCoreGetsTheBusThenThePanelGetsThePortUnasked) {
    Calls whenRegistered;
    Calls whenAsked;
    ThePluginCore().duringEntry["RegisterPlugPlug"] = [&] { whenRegistered = BusCalls(); };
    ThePluginCore().duringEntry["GetSocketPort"] = [&] { whenAsked = BusCalls(); };
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd, Response("49152")}));
    EXPECT_EQ(PluginCoreCalls(), (Calls{"RegisterPlugPlug()", "GetSocketPort(0)"}));
    EXPECT_EQ(whenRegistered, (Calls{kLoad, kAdd}));
    EXPECT_EQ(whenAsked, (Calls{kLoad, kAdd}));
}

TEST_F(PortNumberExchangeTest, PluginCoreGetsTheBoundState) {
    RegisterPortNumberListener();
    const PlugPlugState* const state = ThePluginCore().plugPlug;
    ASSERT_NE(state, nullptr);
    const HMODULE program = GetModuleHandleW(nullptr);
    EXPECT_EQ(state->module, program);
    EXPECT_EQ(reinterpret_cast<void*>(state->addListener),
              reinterpret_cast<void*>(GetProcAddress(program, "PlugPlugAddEventListener")));
    EXPECT_EQ(reinterpret_cast<void*>(state->dispatch),
              reinterpret_cast<void*>(GetProcAddress(program, "PlugPlugDispatchEvent")));
}

TEST_F(RegisteredPortNumberExchangeTest, SecondRegistrationDoesNothing) {
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), Calls{});
    EXPECT_EQ(PluginCoreCalls(), Calls{});
}

TEST_F(PortNumberExchangeTest, MissingLibraryIsTriedAgainByEveryCallUntilItIsThere) {
    ThePlugPlug().calls.Fail("LoadLibraryW", 126, 1);
    ThePlugPlug().calls.Fail("LoadLibraryW", 126, 2);
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kLoad}));
    EXPECT_EQ(PluginCoreCalls(), Calls{});
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kLoad, kLoad, kAdd, Response("49152")}));
    EXPECT_EQ(ThePluginCore().calls.Count("RegisterPlugPlug"), 1);
}

// Dispatching is the last function that is bound.
FARPROC(WINAPI* sRealGetProcAddress)(HMODULE, LPCSTR) = nullptr;
FARPROC WINAPI HideDispatch(HMODULE module, LPCSTR name) {
    return std::string(name) == "PlugPlugDispatchEvent" ? nullptr : sRealGetProcAddress(module, name);
}

TEST_F(PortNumberExchangeTest, LibraryThatLacksAFunctionIsNotUsed) {
    {
        const ImportPatch lookUp("GetProcAddress", AsReplacement(HideDispatch));
        sRealGetProcAddress = lookUp.Original<decltype(sRealGetProcAddress)>();
        EXPECT_EQ(RegisterPortNumberListener(), 0);
    }
    EXPECT_EQ(BusCalls(), Calls{kLoad});
    EXPECT_EQ(PluginCoreCalls(), Calls{});
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kLoad, kAdd, Response("49152")}));
}

TEST_F(PortNumberExchangeTest, RefusedListenerStillGivesThePluginCoreTheBusAndEveryStepIsRepeatedByTheNextCall) {
    ThePlugPlug().calls.Fail("PlugPlugAddEventListener", 1);
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd}));
    EXPECT_EQ(PluginCoreCalls(), Calls{"RegisterPlugPlug()"});
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd, kLoad, kAdd, Response("49152")}));
    EXPECT_EQ(PluginCoreCalls(), (Calls{"RegisterPlugPlug()", "RegisterPlugPlug()", "GetSocketPort(0)"}));
}

TEST_F(PortNumberExchangeTest, AnswersOfThePluginCoreAndOfDispatchingDoNotCount) {
    ThePluginCore().calls.Fail("RegisterPlugPlug", 5);
    ThePlugPlug().calls.Fail("PlugPlugDispatchEvent", 6);
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd, Response("49152")}));
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls().size(), 3u);
}

TEST_F(PortNumberExchangeTest, PluginCoreThatThrowsWhenItGetsTheBusDoesNotMakeTheListenerBeAddedTwice) {
    ThePluginCore().throwingEntry = "RegisterPlugPlug";
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd}));
    ThePluginCore().throwingEntry.clear();
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd}));
    ThePlugPlug().SendRequest();
    EXPECT_EQ(BusCalls().back(), Response("49152"));
}

TEST_F(PortNumberExchangeTest, ExceptionOfTheBusInsideTheRegistrationIsSilent) {
    ThePlugPlug().duringDispatch = ThrowLikeAnotherCompiler;
    EXPECT_NO_THROW(EXPECT_EQ(RegisterPortNumberListener(), 0));
    EXPECT_TRUE(RecordedLog().empty());
    ThePlugPlug().duringDispatch = nullptr;
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd, Response("49152")}));
}

TEST_F(PortNumberExchangeTest, PortThatIsNotKnownIsNotSentAndTheListenerStaysRegistered) {
    ThePluginCore().calls.Fail("GetSocketPort", 1);
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd}));
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd}));
}

// --- the listener ---------------------------------------------------------------------------------------------------

TEST_F(RegisteredPortNumberExchangeTest, EveryRequestGetsOneResponse) {
    ThePlugPlug().SendRequest();
    ThePluginCore().socketPort = 8080;
    ThePlugPlug().SendRequest();
    EXPECT_EQ(BusCalls(), (Calls{Response("49152"), Response("8080")}));
    EXPECT_EQ(PluginCoreCalls(), (Calls{"GetSocketPort(0)", "GetSocketPort(0)"}));
}

TEST_F(RegisteredPortNumberExchangeTest, RequestItselfIsNotRead) {
    ThePlugPlug().listener(nullptr, nullptr);
    EXPECT_EQ(BusCalls(), Calls{Response("49152")});
}

TEST_F(RegisteredPortNumberExchangeTest, RequestBeforeThePortIsKnownStaysUnansweredAndTheNextOneIsAnswered) {
    ThePluginCore().calls.Fail("GetSocketPort", 1);
    ThePlugPlug().SendRequest();
    EXPECT_EQ(BusCalls(), Calls{});
    ThePlugPlug().SendRequest();
    EXPECT_EQ(BusCalls(), Calls{Response("49152")});
}

TEST_F(RegisteredPortNumberExchangeTest, ExceptionOfThePluginCoreDoesNotLeaveTheListener) {
    ThePluginCore().throwingEntry = "GetSocketPort";
    EXPECT_NO_THROW(ThePlugPlug().SendRequest());
    EXPECT_EQ(BusCalls(), Calls{});
}

TEST_F(RegisteredPortNumberExchangeTest, ExceptionOfTheBusDoesNotLeaveTheListener) {
    ThePlugPlug().duringDispatch = ThrowLikeAnotherCompiler;
    EXPECT_NO_THROW(ThePlugPlug().SendRequest());
    ThePlugPlug().duringDispatch = [] { throw std::runtime_error("from the bus"); };
    EXPECT_NO_THROW(ThePlugPlug().SendRequest());
    EXPECT_EQ(BusCalls().size(), 2u);
}

TEST_F(RegisteredPortNumberExchangeTest, MemoryThatRunsOutDoesNotLeaveTheListener) {
    bool hasRunOut = true;
    int attempts = 0;
    for (int nth = 1; hasRunOut; ++nth) {
        const MemoryRunningOut memory(nth);
        EXPECT_NO_THROW(ThePlugPlug().SendRequest());
        hasRunOut = MemoryRunningOut::HasRunOut();
        ++attempts;
    }
    EXPECT_GT(attempts, 1);
    EXPECT_EQ(BusCalls().back(), Response("49152"));
}

// --- SendPortNumberResponse -----------------------------------------------------------------------------------------

TEST_F(RegisteredPortNumberExchangeTest, Port0IsAPortLikeAnyOther) {
    ThePluginCore().socketPort = 0;
    SendPortNumberResponse();
    EXPECT_EQ(BusCalls(), Calls{Response("0")});
}

TEST_F(RegisteredPortNumberExchangeTest, PortIsUnsignedAndNotGrouped) {
    ThePluginCore().socketPort = 4294967295;
    SendPortNumberResponse();
    EXPECT_EQ(BusCalls(), Calls{Response("4294967295")});
}

// What the C runtime was given back; whoever frees a block must not allocate to say so.
bool sTextWasFreed = false;
void (*sRealFree)(void*) = nullptr;

void WatchFree(void* block) {
    if (block != nullptr && block == ThePlugPlug().lastData) {
        sTextWasFreed = true;
    }
    sRealFree(block);
}

TEST_F(RegisteredPortNumberExchangeTest, TextOutlivesTheEvent) {
    const ImportPatch freePatch("free", AsReplacement(WatchFree));
    sRealFree = freePatch.Original<void (*)(void*)>();
    sTextWasFreed = false;
    SendPortNumberResponse();
    ASSERT_FALSE(sTextWasFreed);
    EXPECT_STREQ(ThePlugPlug().lastData, "<payload><number>49152</number></payload>");
}

TEST_F(RegisteredPortNumberExchangeTest, TextOutlivesARequestThatArrivesWhileItIsDelivered) {
    ThePluginCore().socketPort = 7;
    ThePlugPlug().SendRequest();
    ThePlugPlug().duringDispatch = [] {
        ThePlugPlug().duringDispatch = nullptr;
        ThePluginCore().socketPort = 4294967295;
        ThePlugPlug().SendRequest();
    };
    const ImportPatch freePatch("free", AsReplacement(WatchFree));
    sRealFree = freePatch.Original<void (*)(void*)>();
    sTextWasFreed = false;
    ThePlugPlug().SendRequest();
    ASSERT_FALSE(sTextWasFreed);
    EXPECT_EQ(BusCalls(), (Calls{Response("7"), Response("7"), Response("4294967295")}));
}

TEST_F(RegisteredPortNumberExchangeTest, TextOfEveryResponseIsTheSameOne) {
    SendPortNumberResponse();
    const char* const text = ThePlugPlug().lastData;
    ThePluginCore().socketPort = 4294967295;
    SendPortNumberResponse();
    EXPECT_EQ(ThePlugPlug().lastData, text);
}

TEST_F(PortNumberExchangeTest, ResponseWithoutABoundLibraryGoesNowhere) {
    SendPortNumberResponse();
    EXPECT_EQ(PluginCoreCalls(), Calls{"GetSocketPort(0)"});
    EXPECT_EQ(BusCalls(), Calls{});
}

TEST(PortNumberExchangeWithoutPluginCoreTest, ListenerIsRegisteredOnceAndNothingIsSent) {
    const MissingPluginCore noPluginCore;
    const LoadablePlugPlug loadable;
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    ThePlugPlug().SendRequest();
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd}));
    EXPECT_EQ(PluginCoreCalls(), Calls{});
}

}  // namespace
