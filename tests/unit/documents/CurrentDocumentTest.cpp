#include "documents/CurrentDocument.h"

#include "documents/DocumentRegistry.h"
#include "support/Errors.h"
#include "support/host/HostFixture.h"

namespace {

using CurrentDocumentTest = HostTest;

TEST_F(CurrentDocumentTest, IsWhatTheHostSays) {
    EXPECT_EQ(CurrentDocument(), host.currentDocument);
    EXPECT_EQ(host.calls.Calls(), std::vector<std::string>{"GetDocument()"});
}

TEST_F(CurrentDocumentTest, IsNullWhenTheHostDoesNotTell) {
    host.calls.Fail("GetDocument", 1);
    EXPECT_EQ(CurrentDocument(), nullptr);
}

// --- CurrentDocumentPath --------------------------------------------------------------------------------------------

TEST_F(CurrentDocumentTest, PathIsTheFullOneAsUtf8) {
    host.currentPath = "C:/Pl\xC3\xA4ne/a.ai";
    EXPECT_EQ(CurrentDocumentPath(), "C:/Pl\xC3\xA4ne/a.ai");
    EXPECT_EQ(host.calls.Calls(), (std::vector<std::string>{"GetDocumentFileSpecification()", "GetFullPath(0)",
                                                            "Destroy()", "DeleteFilePath()"}));
}

TEST_F(CurrentDocumentTest, PathOfADocumentNeverSavedIsItsBareTitle) {
    host.currentPath = "Untitled-1";
    EXPECT_EQ(CurrentDocumentPath(), "Untitled-1");
}

TEST_F(CurrentDocumentTest, PathIsEmptyWithoutADocument) { EXPECT_EQ(CurrentDocumentPath(), ""); }

TEST_F(CurrentDocumentTest, PathThatTheHostRefusesIsEmptyWhateverItsCode) {
    host.currentPath = "C:/a.ai";
    for (const std::int32_t code : {1, -1, 1145393987}) {
        host.calls.FailAlways("GetDocumentFileSpecification", code);
        EXPECT_EQ(CurrentDocumentPath(), "") << code;
    }
}

TEST_F(CurrentDocumentTest, FailureOfThePathsConversionIsTheHostsErrorObject) {
    host.currentPath = "C:/a.ai";
    host.calls.Fail("GetFullPath", 99);
    try {
        CurrentDocumentPath();
        FAIL();
    } catch (const ai::Error& error) {
        EXPECT_EQ(error.Code(), 99);
    }
}

// --- RefreshRecordedPath --------------------------------------------------------------------------------------------

TEST_F(CurrentDocumentTest, RecordedFullPathIsTakenWithoutAskingTheHost) {
    SetFilePathForDocumentHandle(host.currentDocument, "a/b.ai");
    EXPECT_EQ(RefreshRecordedPath(host.currentDocument), "a/b.ai");
    EXPECT_TRUE(host.calls.Calls().empty());
}

TEST_F(CurrentDocumentTest, EmptyRecordedPathIsLeftAsItIs) {
    host.currentPath = "C:/a.ai";
    EXPECT_EQ(RefreshRecordedPath(host.currentDocument), "");
    EXPECT_TRUE(host.calls.Calls().empty());
}

TEST_F(CurrentDocumentTest, BareNameGivesWayToAFullPathWhichIsRecorded) {
    SetFilePathForDocumentHandle(host.currentDocument, "Untitled-1");
    host.currentPath = "C:/a.ai";
    EXPECT_EQ(RefreshRecordedPath(host.currentDocument), "C:/a.ai");
    EXPECT_EQ(GetFilePathForDocumentHandle(host.currentDocument), "C:/a.ai");
}

TEST_F(CurrentDocumentTest, BareNameStaysWhenTheHostHasNoPathEither) {
    SetFilePathForDocumentHandle(host.currentDocument, "Untitled-1");
    for (const char* path : {"", "Untitled-2"}) {
        host.currentPath = path;
        EXPECT_EQ(RefreshRecordedPath(host.currentDocument), "Untitled-1");
    }
    host.calls.Fail("GetDocumentFileSpecification", 1);
    EXPECT_EQ(RefreshRecordedPath(host.currentDocument), "Untitled-1");
}

}  // namespace
