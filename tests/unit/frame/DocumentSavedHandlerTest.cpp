#include "unit/frame/DocumentFixture.h"

namespace {

class DocumentSavedTest : public DocumentTest {
  protected:
    DocumentSavedTest() {
        UseFont("Helvetica");
        host.currentPath = "C:/saved.ai";
    }
    std::int32_t Save() { return Notify(&PluginGlobals::documentSaved, "AI Command Notifier: After Save", nullptr); }
    std::int32_t SaveAs() {
        return Notify(&PluginGlobals::documentSavedAs, "AI Command Notifier: After Save As", nullptr);
    }
};

TEST_F(DocumentSavedTest, SavedDocumentIsReportedWithPathAndFontUsage) {
    EXPECT_EQ(Save(), 0);
    EXPECT_EQ(PluginCoreCalls(),
              std::vector<std::string>{"HandleSaveDocument('C:/saved.ai', '" + ReportOf("Helvetica") + "')"});
    EXPECT_EQ(CountRecorded("...afterSaveNotifier"), 1);
    EXPECT_EQ(CountRecorded("...afterSaveAsNotifier"), 0);
}

TEST_F(DocumentSavedTest, SaveAsIsReportedAlikeAndLoggedApart) {
    EXPECT_EQ(SaveAs(), 0);
    EXPECT_EQ(PluginCoreCalls(),
              std::vector<std::string>{"HandleSaveDocument('C:/saved.ai', '" + ReportOf("Helvetica") + "')"});
    EXPECT_EQ(CountRecorded("...afterSaveNotifier"), 0);
    EXPECT_EQ(CountRecorded("...afterSaveAsNotifier"), 1);
}

TEST_F(DocumentSavedTest, SaveThatDidNotHappenIsNotReported) {
    host.currentModified = true;
    EXPECT_EQ(Save(), 0);
    EXPECT_TRUE(PluginCoreCalls().empty());
    EXPECT_EQ(CountRecorded("...afterSaveNotifier"), 1);
    EXPECT_THAT(host.calls.Calls(), testing::Not(testing::Contains("GetDocumentFileSpecification()")));
}

TEST_F(DocumentSavedTest, HostThatDoesNotTellWhetherTheSaveHappenedIsNotBelieved) {
    host.calls.FailAlways("GetDocumentModified", 2);
    EXPECT_EQ(Save(), 0);
    EXPECT_TRUE(PluginCoreCalls().empty());
}

TEST_F(DocumentSavedTest, ScanComesBeforeTheQuestionWhetherTheSaveHappened) {
    int scans = 0;
    host.calls.During("GetDocumentModified", [&] { scans = host.calls.Count("GetMatchingArt"); });
    Save();
    EXPECT_EQ(scans, 2);
}

TEST_F(DocumentSavedTest, ScanComesBeforeTheLineThatTellsTheKindOfSave) {
    Save();
    SaveAs();
    std::vector<std::string> order;
    for (const std::string& line : RecordedTexts()) {
        if (line == "Exiting CurrentDocumentFontUsage" || line.starts_with("...afterSave")) {
            order.push_back(line);
        }
    }
    EXPECT_EQ(order, (std::vector<std::string>{"Exiting CurrentDocumentFontUsage", "...afterSaveNotifier",
                                               "Exiting CurrentDocumentFontUsage", "...afterSaveAsNotifier"}));
}

TEST_F(DocumentSavedTest, PathQuerysFailureBecomesTheResult) {
    host.calls.FailAlways("GetDocumentFileSpecification", 21);
    EXPECT_EQ(Save(), 21);
    EXPECT_TRUE(PluginCoreCalls().empty());
}

TEST_F(DocumentSavedTest, DocumentWithoutAPathIsNotReported) {
    host.currentPath = "";
    EXPECT_EQ(Save(), 0);
    EXPECT_TRUE(PluginCoreCalls().empty());
}

TEST_F(DocumentSavedTest, PluginCoresResultIsIgnored) {
    ThePluginCore().script.Fail("HandleSaveDocument", 4);
    EXPECT_EQ(Save(), 0);
}

TEST_F(DocumentSavedTest, DocumentWithoutAReportIsReportedWithAnEmptyText) {
    host.textFrames.clear();
    Save();
    EXPECT_EQ(PluginCoreCalls(), std::vector<std::string>{"HandleSaveDocument('C:/saved.ai', '')"});
}

TEST_F(DocumentSavedTest, DisabledPluginCoreIsNotToldAndNothingIsScanned) {
    ThePluginCore().script["PluginIsEnabled"].enabled = 0;
    EXPECT_EQ(Save(), 0);
    EXPECT_TRUE(host.calls.Calls().empty());
    EXPECT_EQ(CountRecorded("...afterSaveNotifier"), 0);
}

TEST_F(DocumentSavedTest, LogsEntryWithTheDataAndExit) {
    Handle(HandleDocumentSavedNotifier);
    EXPECT_EQ(
        RecordedLog().front(),
        (RecordedLine{1, "Entering HandleDocumentSavedNotifier(message->notifyData = " + LowText(document) + ")"}));
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "HandleDocumentSavedNotifier returning 0"}));
}

}  // namespace
