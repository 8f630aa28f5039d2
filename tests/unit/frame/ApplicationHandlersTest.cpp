#include "frame/NotifierHandlers.h"
#include "support/Log.h"
#include "unit/frame/FrameFixture.h"

namespace {

class ApplicationHandlersTest : public StartedTest {
  protected:
    AINotifierMessage message = Notification(reinterpret_cast<AINotifierHandle>(0x100004321), "any", nullptr);
};

TEST_F(ApplicationHandlersTest, StartupLogsEntryAndExitOnly) {
    EXPECT_EQ(HandleStartupNotifier(&message), 0);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering HandleStartupNotifier(message->notifier = 0x00004321)"},
                                 {-1, "HandleStartupNotifier returning 0"},
                             }));
    EXPECT_TRUE(PluginCoreCalls().empty());
}

TEST_F(ApplicationHandlersTest, FontListChangeLogsEntryAndExitOnly) {
    EXPECT_EQ(HandleFontListChangedNotifier(&message), 0);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering HandleFontListChangedNotifier(message->notifier = 0x00004321)"},
                                 {-1, "HandleFontListChangedNotifier returning 0"},
                             }));
    EXPECT_TRUE(PluginCoreCalls().empty());
}

TEST_F(ApplicationHandlersTest, ShutdownShutsDownAndReturns0WhateverShutdownSays) {
    ThePluginCore().script.Fail("TerminatePluginCoreInterface", 44);
    EXPECT_EQ(HandleShutdownNotifier(&message), 0);
    EXPECT_EQ(message.d.globals, nullptr);
    host.globals = message.d.globals;
    EXPECT_EQ(host.LiveBlocks(), 0);
    EXPECT_EQ(PluginCoreCalls().front(), "TerminatePluginCoreInterface()");
    EXPECT_EQ(RecordedLog().front(),
              (RecordedLine{1, "Entering HandleShutdownNotifier(message->notifier = 0x00004321)"}));
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "HandleShutdownNotifier returning 0"}));
}

TEST_F(ApplicationHandlersTest, ShutdownNotificationFreesTheGlobalsAndTheClosingMessageReturns0AtOnce) {
    EXPECT_EQ(Notify(&PluginGlobals::applicationShutdown, "AI Application Shutdown Notifier", nullptr), 0);
    EXPECT_EQ(host.globals, nullptr);
    EXPECT_EQ(host.LiveBlocks(), 0);
    ClearRecords();
    EXPECT_EQ(Send("SP Interface", "Shutdown"), 0);
    EXPECT_TRUE(PluginCoreCalls().empty());
    EXPECT_EQ(RecordedTexts(), (std::vector<std::string>{"Entering PluginMain('SP Interface', 'Shutdown', ...)",
                                                         "Entering ShutdownPlugin",
                                                         "PluginMain('SP Interface', 'Shutdown', ...) returning 0"}));
}

TEST_F(ApplicationHandlersTest, NullMessagesAreBadParameters) {
    for (const auto handler :
         {HandleStartupNotifier, HandleShutdownNotifier, HandleFontListChangedNotifier, HandleDocumentOpenedNotifier,
          HandleDocumentNewNotifier, HandleDocumentChangedNotifier, HandleDocumentAboutToCloseNotifier,
          HandleDocumentClosedNotifier, HandleDocumentSavedNotifier}) {
        EXPECT_EQ(handler(nullptr), 0x5041524D);
    }
    EXPECT_TRUE(RecordedLog().empty());
}

}  // namespace
