#include "unit/frame/DocumentFixture.h"

namespace {

class DocumentChangedTest : public DocumentTest {
  protected:
    DocumentChangedTest() { UseFont("Helvetica"); }
    std::int32_t Change() { return Handle(HandleDocumentChangedNotifier, other); }
};

TEST_F(DocumentChangedTest, FontUsageOfTheCurrentDocumentIsRecordedWhateverTheNotificationNames) {
    EXPECT_EQ(Change(), 0);
    EXPECT_EQ(GetFontUsageForDocumentHandle(document), ReportOf("Helvetica"));
    EXPECT_EQ(DocumentRegistrySize(), 1u);
}

TEST_F(DocumentChangedTest, BareNameIsReplacedByThePathThatTheDocumentHasByNow) {
    SetFilePathForDocumentHandle(document, "Untitled-1");
    host.currentPath = "C:/saved.ai";
    EXPECT_EQ(Change(), 0);
    EXPECT_EQ(GetFilePathForDocumentHandle(document), "C:/saved.ai");
}

TEST_F(DocumentChangedTest, PathWithABackslashAloneIsAPath) {
    SetFilePathForDocumentHandle(document, "Untitled-1");
    host.currentPath = "saved\\here.ai";
    Change();
    EXPECT_EQ(GetFilePathForDocumentHandle(document), "saved\\here.ai");
}

TEST_F(DocumentChangedTest, BareNameStaysWhileTheDocumentHasNoPath) {
    SetFilePathForDocumentHandle(document, "Untitled-1");
    host.currentPath = "Untitled-2";
    Change();
    EXPECT_EQ(GetFilePathForDocumentHandle(document), "Untitled-1");
}

TEST_F(DocumentChangedTest, BareNameStaysWhenTheHostDoesNotTellThePath) {
    SetFilePathForDocumentHandle(document, "Untitled-1");
    host.calls.FailAlways("GetDocumentFileSpecification", 3);
    EXPECT_EQ(Change(), 0);
    EXPECT_EQ(GetFilePathForDocumentHandle(document), "Untitled-1");
    EXPECT_EQ(GetFontUsageForDocumentHandle(document), ReportOf("Helvetica"));
}

TEST_F(DocumentChangedTest, EmptyOrFullPathIsNotAskedForAgain) {
    Change();
    SetFilePathForDocumentHandle(document, "/mac/style.ai");
    Change();
    EXPECT_THAT(host.calls.Calls(), testing::Not(testing::Contains("GetDocumentFileSpecification()")));
}

TEST_F(DocumentChangedTest, NoCurrentDocumentMeansNothingToDo) {
    host.AnswerNullDocument();
    EXPECT_EQ(Change(), 0);
    EXPECT_EQ(DocumentRegistrySize(), 0u);
}

TEST_F(DocumentChangedTest, HostThatDoesNotTellTheDocumentMeansNothingToDo) {
    host.calls.FailAlways("GetDocument", 2);
    EXPECT_EQ(Change(), 0);
    EXPECT_EQ(DocumentRegistrySize(), 0u);
}

TEST_F(DocumentChangedTest, DisabledPluginCoreMeansNothingToDo) {
    ThePluginCore().script["PluginIsEnabled"].enabled = 0;
    EXPECT_EQ(Change(), 0);
    EXPECT_TRUE(host.calls.Calls().empty());
    EXPECT_EQ(DocumentRegistrySize(), 0u);
}

TEST_F(DocumentChangedTest, LogsEntryWithTheDataAndExit) {
    Change();
    EXPECT_EQ(
        RecordedLog().front(),
        (RecordedLine{1, "Entering HandleDocumentChangedNotifier(message->notifyData = " + LowText(other) + ")"}));
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "HandleDocumentChangedNotifier returning 0"}));
}

}  // namespace
