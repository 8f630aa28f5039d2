#include "unit/frame/DocumentFixture.h"

namespace {

using DocumentNewTest = DocumentTest;

TEST_F(DocumentNewTest, PluginCoreIsToldAndItsResultIgnored) {
    ThePluginCore().script.Fail("HandleCreateNewDocument", 9);
    EXPECT_EQ(Handle(HandleDocumentNewNotifier), 0);
    EXPECT_EQ(PluginCoreCalls(), std::vector<std::string>{"HandleCreateNewDocument(256 zeros, 256)"});
    EXPECT_EQ(sGetForegroundCalls, 2);
}

TEST_F(DocumentNewTest, PluginCoreIsToldBeforeTheForegroundIsToggled) {
    int toggles = 99;
    ThePluginCore().script["HandleCreateNewDocument"].during = [&] { toggles = sGetForegroundCalls; };
    Handle(HandleDocumentNewNotifier);
    EXPECT_EQ(toggles, 0);
}

TEST_F(DocumentNewTest, DisabledPluginCoreIsNotToldButTheForegroundIsToggled) {
    ThePluginCore().script["PluginIsEnabled"].enabled = 0;
    EXPECT_EQ(Handle(HandleDocumentNewNotifier), 0);
    EXPECT_TRUE(PluginCoreCalls().empty());
    EXPECT_EQ(sGetForegroundCalls, 2);
}

TEST_F(DocumentNewTest, NothingIsRecorded) {
    Handle(HandleDocumentNewNotifier);
    EXPECT_EQ(DocumentRegistrySize(), 0u);
    EXPECT_EQ(RecordedLog().front(),
              (RecordedLine{1, "Entering HandleDocumentNewNotifier(message->notifyData = " + LowText(document) + ")"}));
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "HandleDocumentNewNotifier returning 0"}));
}

}  // namespace
