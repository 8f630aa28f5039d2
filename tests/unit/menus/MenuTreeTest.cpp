#include "menus/MenuTree.h"

#include <gtest/gtest.h>

#include "support/fakes/FakeHost.h"

namespace {

TEST(MenuTreeTest, GapsAnswerSuccessAndAskNothingOfTheHost) {
    FakeHost host;
    SPInterfaceMessage startup{host.MessageData()};
    AIMenuMessage menu{host.MessageData(), nullptr};
    EXPECT_EQ(AddAllQuorvelMenuItems(&startup), 0);
    EXPECT_EQ(updateMenuItem(&menu), 0);
    EXPECT_EQ(GoMenuItem(&menu), 0);
    EXPECT_TRUE(host.calls.Calls().empty());
}

}  // namespace
