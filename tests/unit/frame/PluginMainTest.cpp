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
    EXPECT_EQ(Send("AI Timer", "AI Go"), 0);
    EXPECT_EQ(Send("AI Timer", "Nonsense"), 0);
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(PluginMainTest, NullCallerIsNotLoggedByTheEntryAndDoesNothing) {
    EXPECT_EQ(Send(nullptr, "AI Go"), 0);
    for (const std::string& line : RecordedTexts()) {
        EXPECT_EQ(line.find("PluginMain"), std::string::npos) << line;
    }
}

TEST_F(PluginMainTest, ResultOfTheMessageIsReturnedAndLogged) {
    SPMessageData* const none = nullptr;
    EXPECT_EQ(PluginMain("AI Menu", "AI Go", none), kBadParameterErr);
    EXPECT_EQ(RecordedTexts().back(), "PluginMain('AI Menu', 'AI Go', ...) returning 1346458189");
}

}  // namespace
