#include "frame/IdleTimer.h"

#include "unit/frame/FrameFixture.h"

namespace {

using IdleTimerTest = StartedTest;

TEST_F(IdleTimerTest, GapsAnswerSuccessAndAskNothingOfHostAndPluginCore) {
    SPInterfaceMessage startup{host.MessageData()};
    EXPECT_EQ(AddTimers(&startup), 0);
    EXPECT_EQ(HandleIdleTick(), 0);
    EXPECT_EQ(RemoveTimers(), 0);
    EXPECT_TRUE(host.calls.Calls().empty());
    EXPECT_TRUE(PluginCoreCalls().empty());
}

}  // namespace
