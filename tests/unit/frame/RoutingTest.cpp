// Callers and selectors are compared by the host. Here it spells each of them in its own way: comparing bytes or
// addresses finds no route.
#include <deque>

#include "frame/base/Suites.h"
#include "unit/frame/FrameFixture.h"

namespace {

class RoutingTest : public FrameTest {
  protected:
    // Another spelling, which the host takes for the token.
    const char* Alias(const std::string& token) {
        spellings.push_back("the host's " + token);
        host.model.tokenAliases[spellings.back()] = token;
        return spellings.back().c_str();
    }

    // Sends the message in the host's spelling.
    std::int32_t SendAlias(const char* caller, const char* selector) {
        last.d = host.MessageData();
        return Send(Alias(caller), Alias(selector), &last.d);
    }

    void Start() {
        LoadFakePluginCore();
        EXPECT_EQ(Startup(), 0);
        ClearRecords();
    }

    std::deque<std::string> spellings;
    // As long as the longest message that is sent this way.
    AIFileFormatMessage last{};
};

TEST_F(RoutingTest, StartupAboutAndShutdown) {
    LoadFakePluginCore();
    EXPECT_EQ(SendAlias("SP Interface", "Startup"), 0);
    EXPECT_NE(host.globals, nullptr);
    ClearRecords();
    EXPECT_EQ(SendAlias("SP Interface", "About"), 0);
    EXPECT_EQ(PluginCoreCalls(), std::vector<std::string>{"InvokeCommandDialog('', 256 zeros)"});
    EXPECT_EQ(SendAlias("SP Interface", "Shutdown"), 0);
    EXPECT_EQ(host.globals, nullptr);
    EXPECT_FALSE(SuitesAreHeld());
}

TEST_F(RoutingTest, StartupAfterAShutdownAcquiresTheSuitesAgain) {
    Start();
    Send("SP Interface", "Shutdown");
    EXPECT_EQ(SendAlias("SP Interface", "Startup"), 0);
    EXPECT_TRUE(SuitesAreHeld());
}

TEST_F(RoutingTest, ClosingMessagesWithoutAStartupAcquireNothing) {
    EXPECT_EQ(SendAlias("SP Interface", "Shutdown"), 0);
    EXPECT_EQ(SendAlias("SP Access", "Unload"), 0);
    EXPECT_TRUE(host.calls.Calls().empty());
}

TEST_F(RoutingTest, UnloadIsRefusedWhileThePluginRuns) {
    Start();
    EXPECT_EQ(SendAlias("SP Access", "Unload"), 1);
    EXPECT_EQ(SendAlias("SP Access", "Reload"), 0);
}

TEST_F(RoutingTest, MenuMessages) {
    Start();
    SendAlias("AI Menu", "AI Go");
    EXPECT_EQ(ThePluginCore().calls.Count("HandleMenuSelection"), 1);
    AIMenuMessage update{host.MessageData(), host.AddItem("Fonts")};
    EXPECT_EQ(Send(Alias("AI Menu"), Alias("AI Update"), &update.d), 0);
    EXPECT_EQ(CountRecorded("updateMenuItem returning 0"), 1);
}

TEST_F(RoutingTest, Notification) {
    Start();
    AINotifierMessage message{host.MessageData(), sGlobals->documentNew, "AI Document New Notifier", nullptr};
    EXPECT_EQ(Send(Alias("AI Notifier"), Alias("AI Notify"), &message.d), 0);
    EXPECT_EQ(ThePluginCore().calls.Count("HandleCreateNewDocument"), 1);
}

TEST_F(RoutingTest, Tick) {
    Start();
    EXPECT_EQ(SendAlias("AI Timer", "AI Go"), 0);
    EXPECT_EQ(ThePluginCore().calls.Count("IdleEvent"), 1);
}

TEST_F(RoutingTest, FileFormatCheck) {
    Start();
    last.file = host.MakePath("C:/a.ai");
    EXPECT_EQ(SendAlias("AI File Format", "AI Check"), -1);
    EXPECT_EQ(ThePluginCore().calls.Count("HandleOpenExistingDocument"), 1);
}

}  // namespace
