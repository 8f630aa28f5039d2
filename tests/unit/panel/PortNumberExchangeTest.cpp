#include "panel/PortNumberExchange.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "doubles/common/AllocationFaults.h"
#include "doubles/common/ForeignException.h"
#include "panel/PlugPlugBridge.h"
#include "support/ForeignExceptionGuard.h"
#include "support/log/RecordingLogSink.h"
#include "support/plugincore/FakePluginCore.h"
#include "support/plugincore/MissingPluginCore.h"
#include "support/plugplug/FakePlugPlug.h"

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
        ThePluginCore().script["GetSocketPort"].port = 49152;
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
    ThePluginCore().script["RegisterPlugPlug"].during = [&] { whenRegistered = BusCalls(); };
    ThePluginCore().script["GetSocketPort"].during = [&] { whenAsked = BusCalls(); };
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd, Response("49152")}));
    EXPECT_EQ(PluginCoreCalls(), (Calls{kRegisterPlugPlug, "GetSocketPort(0)"}));
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
    ThePlugPlug().script.Fail("LoadLibraryW", 126, 1);
    ThePlugPlug().script.Fail("LoadLibraryW", 126, 2);
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
    ThePlugPlug().script.Fail("PlugPlugAddEventListener", 1);
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd}));
    EXPECT_EQ(PluginCoreCalls(), Calls{kRegisterPlugPlug});
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd, kLoad, kAdd, Response("49152")}));
    EXPECT_EQ(PluginCoreCalls(), (Calls{kRegisterPlugPlug, kRegisterPlugPlug, "GetSocketPort(0)"}));
}

TEST_F(PortNumberExchangeTest, AnswersOfThePluginCoreAndOfDispatchingDoNotCount) {
    ThePluginCore().script.Fail("RegisterPlugPlug", 5);
    ThePlugPlug().script.Fail("PlugPlugDispatchEvent", 6);
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd, Response("49152")}));
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls().size(), 3u);
}

TEST_F(PortNumberExchangeTest, PluginCoreThatThrowsWhenItGetsTheBusDoesNotMakeTheListenerBeAddedTwice) {
    ThePluginCore().script["RegisterPlugPlug"].throws = doubles::Throw::kForeignException;
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd}));
    ThePluginCore().script["RegisterPlugPlug"].throws = doubles::Throw::kNothing;
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd}));
    SendPanelRequest();
    EXPECT_EQ(BusCalls().back(), Response("49152"));
}

TEST_F(PortNumberExchangeTest, ExceptionOfTheBusInsideTheRegistrationIsSilent) {
    ThePlugPlug().script["PlugPlugDispatchEvent"].during = ThrowLikeAnotherCompiler;
    EXPECT_NO_THROW(EXPECT_EQ(RegisterPortNumberListener(), 0));
    EXPECT_TRUE(RecordedLog().empty());
    ThePlugPlug().script["PlugPlugDispatchEvent"].during = nullptr;
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd, Response("49152")}));
}

TEST_F(PortNumberExchangeTest, PortThatIsNotKnownIsNotSentAndTheListenerStaysRegistered) {
    ThePluginCore().script.Fail("GetSocketPort", 1);
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd}));
    EXPECT_EQ(RegisterPortNumberListener(), 0);
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd}));
}

// --- the listener ---------------------------------------------------------------------------------------------------

TEST_F(RegisteredPortNumberExchangeTest, EveryRequestGetsOneResponse) {
    SendPanelRequest();
    ThePluginCore().script["GetSocketPort"].port = 8080;
    SendPanelRequest();
    EXPECT_EQ(BusCalls(), (Calls{Response("49152"), Response("8080")}));
    EXPECT_EQ(PluginCoreCalls(), (Calls{"GetSocketPort(0)", "GetSocketPort(0)"}));
}

TEST_F(RegisteredPortNumberExchangeTest, RequestItselfIsNotRead) {
    ThePlugPlug().listener(nullptr, nullptr);
    EXPECT_EQ(BusCalls(), Calls{Response("49152")});
}

TEST_F(RegisteredPortNumberExchangeTest, RequestBeforeThePortIsKnownStaysUnansweredAndTheNextOneIsAnswered) {
    ThePluginCore().script.Fail("GetSocketPort", 1);
    SendPanelRequest();
    EXPECT_EQ(BusCalls(), Calls{});
    SendPanelRequest();
    EXPECT_EQ(BusCalls(), Calls{Response("49152")});
}

TEST_F(RegisteredPortNumberExchangeTest, ExceptionOfThePluginCoreDoesNotLeaveTheListener) {
    ThePluginCore().script["GetSocketPort"].throws = doubles::Throw::kForeignException;
    EXPECT_NO_THROW(SendPanelRequest());
    EXPECT_EQ(BusCalls(), Calls{});
}

TEST_F(RegisteredPortNumberExchangeTest, ExceptionOfTheBusDoesNotLeaveTheListener) {
    ThePlugPlug().script["PlugPlugDispatchEvent"].during = ThrowLikeAnotherCompiler;
    EXPECT_NO_THROW(SendPanelRequest());
    ThePlugPlug().script["PlugPlugDispatchEvent"].during = [] { throw std::runtime_error("from the bus"); };
    EXPECT_NO_THROW(SendPanelRequest());
    EXPECT_EQ(BusCalls().size(), 2u);
}

TEST_F(RegisteredPortNumberExchangeTest, MemoryThatRunsOutDoesNotLeaveTheListener) {
    // The answer itself takes no memory any more; what the two libraries do inside their entries may fail like this.
    const auto allocate = [] { ::operator delete(::operator new(24)); };
    ThePluginCore().script["GetSocketPort"].during = allocate;
    ThePlugPlug().script["PlugPlugDispatchEvent"].during = allocate;
    bool hasRunOut = true;
    int attempts = 0;
    for (int nth = 1; hasRunOut; ++nth) {
        const FailingAllocation memory(nth);
        EXPECT_NO_THROW(SendPanelRequest());
        hasRunOut = memory.HasHappened();
        ++attempts;
    }
    EXPECT_GT(attempts, 2);
    EXPECT_EQ(BusCalls().back(), Response("49152"));
}

// --- SendPortNumberResponse -----------------------------------------------------------------------------------------

TEST_F(RegisteredPortNumberExchangeTest, Port0IsAPortLikeAnyOther) {
    ThePluginCore().script["GetSocketPort"].port = 0;
    SendPortNumberResponse();
    EXPECT_EQ(BusCalls(), Calls{Response("0")});
}

TEST_F(RegisteredPortNumberExchangeTest, PortIsUnsignedAndNotGrouped) {
    ThePluginCore().script["GetSocketPort"].port = 4294967295;
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
    ThePluginCore().script["GetSocketPort"].port = 7;
    SendPanelRequest();
    ThePlugPlug().script["PlugPlugDispatchEvent"].during = [] {
        ThePlugPlug().script["PlugPlugDispatchEvent"].during = nullptr;
        ThePluginCore().script["GetSocketPort"].port = 4294967295;
        SendPanelRequest();
    };
    const ImportPatch freePatch("free", AsReplacement(WatchFree));
    sRealFree = freePatch.Original<void (*)(void*)>();
    sTextWasFreed = false;
    SendPanelRequest();
    ASSERT_FALSE(sTextWasFreed);
    EXPECT_EQ(BusCalls(), (Calls{Response("7"), Response("7"), Response("4294967295")}));
}

TEST_F(RegisteredPortNumberExchangeTest, TextOfEveryResponseIsTheSameOne) {
    SendPortNumberResponse();
    const char* const text = ThePlugPlug().lastData;
    ThePluginCore().script["GetSocketPort"].port = 4294967295;
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
    SendPanelRequest();
    EXPECT_EQ(BusCalls(), (Calls{kLoad, kAdd}));
    EXPECT_EQ(PluginCoreCalls(), Calls{});
}

}  // namespace
