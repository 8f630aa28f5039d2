#include "frame/Notifiers.h"

#include "support/Log.h"
#include "unit/frame/FrameFixture.h"

namespace {

class NotifiersTest : public StartedTest {
  protected:
    std::vector<std::string> AddNotifierCalls() const {
        std::vector<std::string> calls;
        for (const std::string& call : host.calls.Calls()) {
            if (call.rfind("AddNotifier(", 0) == 0) {
                calls.push_back(call);
            }
        }
        return calls;
    }

    // Which of the handlers a notification ended up in, by its entry line; GoNotifier's own is left out.
    std::vector<std::string> HandlersEntered() {
        std::vector<std::string> handlers;
        for (const std::string& line : RecordedTexts()) {
            if (line.rfind("Entering Handle", 0) == 0 && line.find("(message->") != std::string::npos) {
                handlers.push_back(line.substr(9, line.find('(') - 9));
            }
        }
        return handlers;
    }

    SPInterfaceMessage startupMessage{host.MessageData()};
};

TEST_F(NotifiersTest, ElevenNotifiersAreAddedInTheirOrderUnderTheirNames) {
    EXPECT_EQ(AddNotifiers(&startupMessage), 0);
    EXPECT_EQ(AddNotifierCalls(), kElevenNotifiers);
}

TEST_F(NotifiersTest, HandlesAreStoredInTheirSlots) {
    host.model.notifiers.Objects().clear();
    AddNotifiers(&startupMessage);
    std::vector<AINotifierHandle> handles;
    for (const auto& [handle, notifier] : host.model.notifiers.Objects()) {
        handles.push_back(reinterpret_cast<AINotifierHandle>(handle));
    }
    ASSERT_EQ(handles.size(), 11u);
    const auto handle = [&](std::size_t order) { return handles[order - 1]; };
    EXPECT_EQ(sGlobals->documentChanged, handle(1));
    EXPECT_EQ(sGlobals->documentOpened, handle(2));
    EXPECT_EQ(sGlobals->documentAboutToClose, handle(3));
    EXPECT_EQ(sGlobals->documentClosed, handle(4));
    EXPECT_EQ(sGlobals->documentNew, handle(5));
    EXPECT_EQ(sGlobals->applicationStarted, handle(6));
    EXPECT_EQ(sGlobals->applicationShutdown, handle(7));
    EXPECT_EQ(sGlobals->fontListChanged, handle(8));
    EXPECT_EQ(sGlobals->menuChanged, handle(9));
    EXPECT_EQ(sGlobals->documentSaved, handle(10));
    EXPECT_EQ(sGlobals->documentSavedAs, handle(11));
}

TEST_F(NotifiersTest, AddingLogsEachStepAndReleasesTheSuite) {
    AddNotifiers(&startupMessage);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering AddNotifiers"},
                                 {0, "...acquiring notifier suite"},
                                 {0, "...adding Change notifier"},
                                 {0, "...adding Open notifier"},
                                 {0, "...adding AboutToClose notifier"},
                                 {0, "...adding Close notifier"},
                                 {0, "...adding DocumentNew notifier"},
                                 {0, "...adding Startup notifier"},
                                 {0, "...adding Shutdown notifier"},
                                 {0, "...adding font-list changed notifier"},
                                 {0, "...adding Menu Changed notifier"},
                                 {0, "...adding Save notifier"},
                                 {0, "...adding Save As notifier"},
                                 {-1, "Exiting AddNotifiers, return code 0"},
                             }));
    EXPECT_EQ(host.calls.Calls().front(), "AcquireSuite('AI Notifier Suite', 4)");
    EXPECT_EQ(host.calls.Calls().back(), "ReleaseSuite('AI Notifier Suite', 4)");
}

TEST_F(NotifiersTest, NullStartupMessageIsABadParameter) {
    EXPECT_EQ(AddNotifiers(nullptr), 0x5041524D);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering AddNotifiers"},
                                 {-1, "Exiting AddNotifiers, return code 1346458189"},
                             }));
    EXPECT_TRUE(host.calls.Calls().empty());
}

TEST_F(NotifiersTest, RefusedNotifierStopsTheRegistrationAtItsRow) {
    host.calls.Fail("AddNotifier", 31, 3);
    EXPECT_EQ(AddNotifiers(&startupMessage), 31);
    EXPECT_EQ(AddNotifierCalls().size(), 3u);
    const std::vector<std::string> lines = RecordedTexts();
    ASSERT_EQ(lines.size(), 8u);
    EXPECT_EQ(std::vector<std::string>(lines.end() - 4, lines.end()),
              (std::vector<std::string>{"...adding AboutToClose notifier", "ERROR:  throwing 31.",
                                        "...exception caught while adding notifiers",
                                        "Exiting AddNotifiers, return code 31"}));
    EXPECT_EQ(host.calls.Calls().back(), "ReleaseSuite('AI Notifier Suite', 4)");
}

TEST_F(NotifiersTest, RefusedNotifierSuiteIsReturnedAndNotReleased) {
    host.RefuseSuite("AI Notifier Suite", 88);
    EXPECT_EQ(AddNotifiers(&startupMessage), 88);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering AddNotifiers"},
                                 {0, "...acquiring notifier suite"},
                                 {0, "ERROR:  throwing 88."},
                                 {0, "...exception caught while adding notifiers"},
                                 {-1, "Exiting AddNotifiers, return code 88"},
                             }));
    EXPECT_EQ(host.calls.Calls(), std::vector<std::string>{"AcquireSuite('AI Notifier Suite', 4)"});
}

TEST_F(NotifiersTest, EachNotifierReachesItsHandler) {
    const std::vector<std::pair<AINotifierHandle PluginGlobals::*, std::string>> routes = {
        {&PluginGlobals::applicationStarted, "HandleStartupNotifier"},
        {&PluginGlobals::documentOpened, "HandleDocumentOpenedNotifier"},
        {&PluginGlobals::documentAboutToClose, "HandleDocumentAboutToCloseNotifier"},
        {&PluginGlobals::documentClosed, "HandleDocumentClosedNotifier"},
        {&PluginGlobals::documentNew, "HandleDocumentNewNotifier"},
        {&PluginGlobals::documentChanged, "HandleDocumentChangedNotifier"},
        {&PluginGlobals::documentSaved, "HandleDocumentSavedNotifier"},
        {&PluginGlobals::documentSavedAs, "HandleDocumentSavedNotifier"},
        {&PluginGlobals::fontListChanged, "HandleFontListChangedNotifier"},
        {&PluginGlobals::applicationShutdown, "HandleShutdownNotifier"},
    };
    for (const auto& [notifier, handler] : routes) {
        ClearRecords();
        Notify(notifier, "whatever", document);
        EXPECT_EQ(HandlersEntered(), std::vector<std::string>{handler});
    }
}

TEST_F(NotifiersTest, MenuChangedIsUnhandledAndSaysSo) {
    auto message = Notification(sGlobals->menuChanged, "AI Menu Changed Notifier", nullptr);
    EXPECT_EQ(GoNotifier(&message), 0);
    const std::string handle = LowText(message.notifier);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering GoNotifier(message->notifier = " + handle + ")"},
                                 {0, "UNHANDLED NOTIFIER MESSAGE TYPE:  AI Menu Changed Notifier"},
                                 {-1, "GoNotifier returning 0"},
                             }));
}

TEST_F(NotifiersTest, ForeignNotifierIsUnhandled) {
    auto message = Notification(reinterpret_cast<AINotifierHandle>(0x9999), "AI Elsewhere Notifier", nullptr);
    EXPECT_EQ(GoNotifier(&message), 0);
    EXPECT_EQ(CountRecorded("UNHANDLED NOTIFIER MESSAGE TYPE:  AI Elsewhere Notifier"), 1);
}

TEST_F(NotifiersTest, NotifierThatWasNeverAddedMatchesNoMessage) {
    sGlobals->documentOpened = nullptr;
    auto message = Notification(nullptr, "AI Document Opened Notifier", document);
    EXPECT_EQ(GoNotifier(&message), 0);
    EXPECT_EQ(CountRecorded("UNHANDLED NOTIFIER MESSAGE TYPE:  AI Document Opened Notifier"), 1);
}

TEST_F(NotifiersTest, NotificationWithoutAGlobalsBlockIsUnhandled) {
    auto message = Notification(sGlobals->documentOpened, "AI Document Opened Notifier", document);
    sGlobals = nullptr;
    EXPECT_EQ(GoNotifier(&message), 0);
    EXPECT_TRUE(HandlersEntered().empty());
}

TEST_F(NotifiersTest, NullNotifierMessageIsABadParameterWithoutALine) {
    EXPECT_EQ(GoNotifier(nullptr), 0x5041524D);
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(NotifiersTest, HandlersResultIsReturnedAndLogged) {
    ThePluginCore().script["HandleOpenExistingDocument"].text = "fonts";
    ThePluginCore().script.Fail("InvokeResolveDialog", 12);
    auto message = Notification(sGlobals->documentOpened, "AI Document Opened Notifier", document);
    EXPECT_EQ(GoNotifier(&message), 12);
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "GoNotifier returning 12"}));
}

}  // namespace
