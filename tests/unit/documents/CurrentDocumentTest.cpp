#include "documents/CurrentDocument.h"

#include "documents/DocumentRegistry.h"
#include "unit/documents/HostFixture.h"

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
