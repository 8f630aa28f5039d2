#include "frame/PluginMain.h"

#include "unit/frame/FrameFixture.h"

namespace {

using PluginMainTest = FrameTest;

TEST_F(PluginMainTest, LogsEntryAndExitAroundEveryMessage) {
    EXPECT_EQ(Send("SP Interface", "Nonsense"), 0);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering PluginMain('SP Interface', 'Nonsense', ...)"},
                                 {0, "- unknown message from kSPInterfaceCaller"},
                                 {-1, "PluginMain('SP Interface', 'Nonsense', ...) returning 0"},
                             }));
}

TEST_F(PluginMainTest, TimerMessagesAreNeverLogged) {
    LoadFakePluginCore();
    EXPECT_EQ(Startup(), 0);
    ClearRecordedLog();
    EXPECT_EQ(Send("AI Timer", "AI Go"), 0);
    EXPECT_EQ(ThePluginCore().calls.Count("IdleEvent"), 1);
    EXPECT_EQ(Send("AI Timer", "Nonsense"), 0);
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(PluginMainTest, NullCallerIsNotLoggedByTheEntryAndDoesNothing) {
    EXPECT_EQ(Send(nullptr, "AI Go"), 0);
    const std::vector<std::string> lines = RecordedTexts();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].rfind("Entering HandlePluginCaller(caller='(null)', selector='AI Go', ", 0), 0u) << lines[0];
    EXPECT_NE(lines[1].find(" doing nothing."), std::string::npos) << lines[1];
    EXPECT_EQ(lines[2].rfind("HandlePluginCaller(caller='(null)'", 0), 0u) << lines[2];
}

TEST_F(PluginMainTest, ResultOfTheMessageIsReturnedAndLogged) {
    SPMessageData* const none = nullptr;
    EXPECT_EQ(PluginMain("AI Menu", "AI Go", none), kBadParameterErr);
    EXPECT_EQ(RecordedTexts().back(), "PluginMain('AI Menu', 'AI Go', ...) returning 1346458189");
}

}  // namespace
