#include "doubles/common/ForeignException.h"
#include "support/Errors.h"
#include "unit/frame/DocumentFixture.h"

namespace {

constexpr std::uint32_t kOpenedAt = 1700000000;

class DocumentClosedTest : public DocumentTest {
  protected:
    DocumentClosedTest() { UseFont("Helvetica"); }

    // The document as opened and about to close: its file, its time and its last report are recorded.
    void RecordSaved() {
        WriteFileWithTime(kOpenedAt);
        SetFilePathForDocumentHandle(document, file);
        SetTimestampForDocumentHandle(document, kOpenedAt);
        SetFontUsageForDocumentHandle(document, "the last report");
        ClearRecords();
    }
    std::int32_t Close() { return Handle(HandleDocumentClosedNotifier); }
};

TEST_F(DocumentClosedTest, UntouchedFileIsClosedWithoutAReport) {
    RecordSaved();
    EXPECT_EQ(Close(), 0);
    EXPECT_EQ(PluginCoreCalls(), std::vector<std::string>{"HandleCloseDocument('" + file + "', '')"});
    EXPECT_EQ(DocumentRegistrySize(), 0u);
}

TEST_F(DocumentClosedTest, RewrittenFileIsSavedThenClosedBothWithTheRecordedReport) {
    RecordSaved();
    WriteFileWithTime(kOpenedAt + 1);
    EXPECT_EQ(Close(), 0);
    EXPECT_EQ(PluginCoreCalls(), (std::vector<std::string>{"HandleSaveDocument('" + file + "', 'the last report')",
                                                           "HandleCloseDocument('" + file + "', 'the last report')"}));
    EXPECT_EQ(DocumentRegistrySize(), 0u);
}

TEST_F(DocumentClosedTest, FileOlderThanRecordedIsNotRewritten) {
    RecordSaved();
    WriteFileWithTime(kOpenedAt - 1);
    Close();
    EXPECT_EQ(PluginCoreCalls(), std::vector<std::string>{"HandleCloseDocument('" + file + "', '')"});
}

TEST_F(DocumentClosedTest, TimesBeyondThe31stBitAreComparedUnsigned) {
    RecordSaved();
    WriteFileWithTime(0x80000000);
    SetTimestampForDocumentHandle(document, 0x7FFFFFFF);
    Close();
    EXPECT_EQ(PluginCoreCalls().size(), 2u);
}

TEST_F(DocumentClosedTest, UnreadableFileIsNotRewritten) {
    RecordSaved();
    DeleteFileA(file.c_str());
    Close();
    EXPECT_EQ(PluginCoreCalls(), std::vector<std::string>{"HandleCloseDocument('" + file + "', '')"});
}

TEST_F(DocumentClosedTest, FileThatCouldNotBeReadAtOpenCountsAsRewritten) {
    RecordSaved();
    SetTimestampForDocumentHandle(document, 0);
    Close();
    EXPECT_EQ(PluginCoreCalls().size(), 2u);
}

TEST_F(DocumentClosedTest, NeverSavedDocumentActivatesItsFontsUnderNoPathAndIsNotClosed) {
    EXPECT_EQ(Close(), 0);
    EXPECT_EQ(PluginCoreCalls(),
              std::vector<std::string>{"ActivateChosenFonts('', '" + ReportOf("Helvetica") + "', 32767)"});
    EXPECT_EQ(DocumentRegistrySize(), 0u);
}

TEST_F(DocumentClosedTest, NeverSavedDocumentWithoutAReportTellsNothing) {
    host.textFrames.clear();
    EXPECT_EQ(Close(), 0);
    EXPECT_TRUE(PluginCoreCalls().empty());
    EXPECT_EQ(DocumentRegistrySize(), 0u);
}

TEST_F(DocumentClosedTest, ReportOfANeverSavedDocumentIsCutAtTheBuffersSize) {
    host.textFrames = {{std::string(200, 'a')}};
    for (int i = 0; i < 300; ++i) {
        host.textFrames.push_back({std::to_string(i) + std::string(150, 'b')});
    }
    Close();
    ASSERT_EQ(PluginCoreCalls().size(), 1u);
    const std::string prefix = "ActivateChosenFonts('', '";
    const std::string suffix = "', 32767)";
    EXPECT_EQ(PluginCoreCalls()[0].size(), prefix.size() + 32767 + suffix.size());
    EXPECT_EQ(PluginCoreCalls()[0].substr(PluginCoreCalls()[0].size() - suffix.size()), suffix);
}

TEST_F(DocumentClosedTest, BareNameIsReplacedByThePathThatTheDocumentHasByNow) {
    RecordSaved();
    SetFilePathForDocumentHandle(document, "Untitled-1");
    host.currentPath = file;
    Close();
    EXPECT_EQ(PluginCoreCalls(), std::vector<std::string>{"HandleCloseDocument('" + file + "', '')"});
}

TEST_F(DocumentClosedTest, BareNameIsClosedUnderThatNameWhenThereIsNoPath) {
    SetFilePathForDocumentHandle(document, "Untitled-1");
    host.currentPath = "Untitled-1";
    Close();
    EXPECT_EQ(PluginCoreCalls(), std::vector<std::string>{"HandleCloseDocument('Untitled-1', '')"});
}

TEST_F(DocumentClosedTest, DisabledPluginCoreMeansThatTheDocumentIsOnlyForgotten) {
    RecordSaved();
    ThePluginCore().script["PluginIsEnabled"].enabled = 0;
    EXPECT_EQ(Close(), 0);
    EXPECT_TRUE(PluginCoreCalls().empty());
    EXPECT_TRUE(host.calls.Calls().empty());
    EXPECT_EQ(DocumentRegistrySize(), 0u);
}

TEST_F(DocumentClosedTest, DocumentIsForgottenAlsoWhenThePluginCoreThrows) {
    for (const char* entry : {"HandleCloseDocument", "ActivateChosenFonts"}) {
        if (std::string(entry) == "HandleCloseDocument") {
            RecordSaved();
        }
        ThePluginCore().script[entry].throws = doubles::Throw::kForeignException;
        EXPECT_THROW(Close(), ForeignException);
        EXPECT_EQ(DocumentRegistrySize(), 0u) << entry;
    }
}

TEST_F(DocumentClosedTest, DocumentIsForgottenAlsoWhenTheHostThrowsLikeAnotherCompiler) {
    SetFilePathForDocumentHandle(document, "Untitled-1");
    host.calls.During("GetDocumentFileSpecification", ThrowLikeAnotherCompiler);
    EXPECT_THROW(Close(), ForeignException);
    EXPECT_EQ(DocumentRegistrySize(), 0u);
}

TEST_F(DocumentClosedTest, OnlyTheClosedDocumentIsForgotten) {
    RecordSaved();
    SetFilePathForDocumentHandle(other, "C:/other.ai");
    Close();
    EXPECT_EQ(DocumentRegistrySize(), 1u);
    EXPECT_EQ(GetFilePathForDocumentHandle(other), "C:/other.ai");
}

TEST_F(DocumentClosedTest, RegistryHoldsOneRecordForEachOpenDocumentAndNoneAfterTheLastClose) {
    const auto handle = [](std::uintptr_t n) { return reinterpret_cast<AIDocumentHandle>(0x2D0C10000 + n); };
    for (std::uintptr_t n = 0; n < 10; ++n) {
        SetFilePathForDocumentHandle(handle(n), "C:/" + std::to_string(n) + ".ai");
        SetFilePathForDocumentHandle(handle(n), "C:/saved as " + std::to_string(n) + ".ai");
    }
    std::size_t left = 10;
    EXPECT_EQ(DocumentRegistrySize(), left);
    for (const std::uintptr_t n : {3u, 7u, 8u, 0u, 4u, 9u, 1u, 6u, 2u, 5u}) {
        EXPECT_EQ(Handle(HandleDocumentClosedNotifier, handle(n)), 0);
        EXPECT_EQ(DocumentRegistrySize(), --left);
    }
}

TEST_F(DocumentClosedTest, PluginCoresResultsAreIgnored) {
    RecordSaved();
    WriteFileWithTime(kOpenedAt + 1);
    ThePluginCore().script["HandleSaveDocument"].result = 3;
    ThePluginCore().script["HandleCloseDocument"].result = 4;
    EXPECT_EQ(Close(), 0);
    EXPECT_EQ(PluginCoreCalls().size(), 2u);
}

TEST_F(DocumentClosedTest, LogsEntryWithTheDataAndExit) {
    Close();
    EXPECT_EQ(
        RecordedLog().front(),
        (RecordedLine{1, "Entering HandleDocumentClosedNotifier(message->notifyData = " + LowText(document) + ")"}));
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "HandleDocumentClosedNotifier returning 0"}));
}

}  // namespace
