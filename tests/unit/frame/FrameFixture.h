// A started plug-in in the double of the host with a fake PluginCore, for tests of the frame.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "dialogs/SuppressionHook.h"
#include "doubles/common/ImportPatch.h"
#include "frame/base/PluginGlobals.h"
#include "frame/base/SuiteOperations.h"
#include "frame/base/Suites.h"
#include "frame/PluginMain.h"
#include "host/NotifierSuite.h"
#include "support/host/TestHost.h"
#include "support/Log.h"
#include "support/log/RecordingLogSink.h"
#include "support/plugincore/FakePluginCore.h"

// What start-up adds, in its order.
inline const std::vector<std::string> kElevenNotifiers = {
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
};

// A handle or address as the log shows it.
inline std::string LowText(const void* address) {
    char text[16];
    std::snprintf(text, sizeof(text), "0x%08x", Low32(address));
    return text;
}

// Nothing is loaded and no message has arrived.
class FrameTest : public testing::Test {
  protected:
    FrameTest() { sGetForegroundCalls = 0; }

    // The host ends: from here on nothing fails, and the plug-in has to give everything back.
    void TearDown() override {
        host.EndFaults();
        ResetFakePluginCore();
        if (host.globals != nullptr || SuitesAreHeld()) {
            Send("SP Interface", "Shutdown");
        }
    }

    // Sends a message as the host does, keeping the globals pointer between messages.
    std::int32_t Send(const char* caller, const char* selector) {
        SPInterfaceMessage message{host.MessageData()};
        return Send(caller, selector, &message.d);
    }

    std::int32_t Send(const char* caller, const char* selector, SPMessageData* message) {
        const std::int32_t result = PluginMain(caller, selector, message);
        host.globals = message->globals;
        return result;
    }

    std::int32_t Startup() { return Send("SP Interface", "Startup"); }

    // Clears what start-up recorded, so that a test sees its own subject alone.
    void ClearRecords() {
        host.calls.Clear();
        ThePluginCore().calls.Clear();
        ClearRecordedLog();
    }

    static const std::vector<std::string>& PluginCoreCalls() { return ThePluginCore().calls.Calls(); }

    TestHost host;

    // The foreground belongs to nobody, so that no window of the machine has a say; the questions are counted.
    static inline int sGetForegroundCalls = 0;
    static HWND WINAPI CountGetForegroundWindow() {
        ++sGetForegroundCalls;
        return nullptr;
    }
    ImportPatch foreground{"GetForegroundWindow", AsReplacement(CountGetForegroundWindow)};
};

// After a successful start-up.
class StartedTest : public FrameTest {
  protected:
    StartedTest() {
        LoadFakePluginCore();
        EXPECT_EQ(Startup(), 0);
        EXPECT_NE(host.globals, nullptr);
        ClearRecords();
    }

    AINotifierMessage Notification(AINotifierHandle notifier, const char* type, AIDocumentHandle about) {
        return {host.MessageData(), notifier, type, about};
    }

    // Sends a notification of one of the plug-in's notifiers.
    std::int32_t Notify(AINotifierHandle PluginGlobals::*notifier, const char* type, AIDocumentHandle about) {
        auto* const globals = static_cast<PluginGlobals*>(host.globals);
        AINotifierMessage message = Notification(globals->*notifier, type, about);
        return Send("AI Notifier", "AI Notify", &message.d);
    }

    const AIDocumentHandle document = host.currentDocument;
};
