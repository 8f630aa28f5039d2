#include "documents/FileFormatHook.h"

#include "support/fakes/FakePluginCore.h"
#include "unit/documents/HostFixture.h"

namespace {

class FileFormatHookTest : public HostTest {
  protected:
    FileFormatHookTest() { LoadFakePluginCore(); }

    std::int32_t Check(const std::string& path) {
        AIFileFormatMessage message{};
        message.d = host.MessageData();
        message.file = host.MakePath(path);
        return CheckFileFormat(&message);
    }
};

TEST_F(FileFormatHookTest, PathGoesToThePluginCoreAndTheAnswerIsMinus1WhateverItSays) {
    ThePluginCore().calls.Fail("HandleOpenExistingDocument", 0x12000000);
    EXPECT_EQ(Check("C:/\xC3\xA4.pdf"), -1);
    EXPECT_EQ(ThePluginCore().calls.Calls(),
              std::vector<std::string>{"HandleOpenExistingDocument('C:/\xC3\xA4.pdf', 32767 zeros, 32767)"});
}

TEST_F(FileFormatHookTest, EmptyPathIsNotHandedOn) {
    EXPECT_EQ(Check(""), -1);
    EXPECT_TRUE(ThePluginCore().calls.Calls().empty());
}

TEST_F(FileFormatHookTest, HostsPathIsReadInPlaceAndNeverDestroyed) {
    Check("C:/a.ai");
    EXPECT_EQ(host.calls.Calls(), (std::vector<std::string>{"GetFullPath(0)", "Destroy()"}));
}

}  // namespace
