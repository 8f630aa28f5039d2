#include "unit/frame/DocumentFixture.h"

namespace {

class DocumentAboutToCloseTest : public DocumentTest {
  protected:
    DocumentAboutToCloseTest() { UseFont("Helvetica"); }
};

TEST_F(DocumentAboutToCloseTest, FontUsageOfTheCurrentDocumentIsRecorded) {
    EXPECT_EQ(Handle(HandleDocumentAboutToCloseNotifier), 0);
    EXPECT_EQ(GetFontUsageForDocumentHandle(document), ReportOf("Helvetica"));
}

TEST_F(DocumentAboutToCloseTest, AnotherDocumentThanTheCurrentOneRecordsNothing) {
    EXPECT_EQ(Handle(HandleDocumentAboutToCloseNotifier, other), 0);
    EXPECT_EQ(DocumentRegistrySize(), 0u);
    EXPECT_EQ(host.calls.Count("GetMatchingArt"), 0);
}

TEST_F(DocumentAboutToCloseTest, NoDocumentIsNotTheCurrentOne) {
    host.AnswerNullDocument();
    EXPECT_EQ(Handle(HandleDocumentAboutToCloseNotifier, nullptr), 0);
    EXPECT_EQ(DocumentRegistrySize(), 0u);
}

TEST_F(DocumentAboutToCloseTest, HostThatDoesNotTellTheDocumentRecordsNothing) {
    host.calls.FailAlways("GetDocument", 2);
    EXPECT_EQ(Handle(HandleDocumentAboutToCloseNotifier), 0);
    EXPECT_EQ(DocumentRegistrySize(), 0u);
}

TEST_F(DocumentAboutToCloseTest, DisabledPluginCoreRecordsNothing) {
    ThePluginCore().script["PluginIsEnabled"].enabled = 0;
    EXPECT_EQ(Handle(HandleDocumentAboutToCloseNotifier), 0);
    EXPECT_TRUE(host.calls.Calls().empty());
    EXPECT_EQ(DocumentRegistrySize(), 0u);
}

TEST_F(DocumentAboutToCloseTest, LogsEntryWithTheDataAndExit) {
    Handle(HandleDocumentAboutToCloseNotifier);
    EXPECT_EQ(RecordedLog().front(),
              (RecordedLine{
                  1, "Entering HandleDocumentAboutToCloseNotifier(message->notifyData = " + LowText(document) + ")"}));
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "HandleDocumentAboutToCloseNotifier returning 0"}));
}

}  // namespace
