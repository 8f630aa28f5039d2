#include "documents/DocumentFile.h"

#include "support/Errors.h"
#include "support/host/HostFixture.h"
#include "support/Log.h"

namespace {

class DocumentFileTest : public HostTest {
  protected:
    std::string EntryLine(int bFileNameOnly) {
        char line[96];
        std::snprintf(line, sizeof(line), "Entering GetDocumentFileSpec(0x%08x, bFileNameOnly=%d)", Low32(&path),
                      bFileNameOnly);
        return line;
    }
    std::string path;
};

TEST_F(DocumentFileTest, FullPathOfTheCurrentDocumentIsUtf8) {
    host.currentPath = "C:\\Entw\xC3\xBCrfe\\\xE6\x96\x87.ai";
    EXPECT_EQ(GetDocumentFileSpec(path, false), 0);
    EXPECT_EQ(path, "C:\\Entw\xC3\xBCrfe\\\xE6\x96\x87.ai");
    EXPECT_EQ(RecordedLog(),
              (std::vector<RecordedLine>{
                  {1, EntryLine(0)},
                  {-1, "GetDocumentFileSpec(pFilePath='" + host.currentPath + "', 0) returning 0 (0x00000000)"},
              }));
    EXPECT_EQ(host.calls.Calls(), (std::vector<std::string>{"GetDocumentFileSpecification()", "GetFullPath(0)",
                                                            "Destroy()", "DeleteFilePath()"}));
}

TEST_F(DocumentFileTest, FileNameAloneWhenAskedFor) {
    host.currentPath = "C:/folder/a.ai";
    EXPECT_EQ(GetDocumentFileSpec(path, true), 0);
    EXPECT_EQ(path, "a.ai");
    EXPECT_EQ(host.calls.Calls()[1], "GetFileName(0)");
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, EntryLine(1)},
                                 {-1, "GetDocumentFileSpec(pFilePath='a.ai', 1) returning 0 (0x00000000)"},
                             }));
}

TEST_F(DocumentFileTest, HostsFailureIsReturnedAndThePathLeftAlone) {
    host.calls.Fail("GetDocumentFileSpecification", 1145393987);
    path = "before";
    EXPECT_EQ(GetDocumentFileSpec(path, false), 1145393987);
    EXPECT_EQ(path, "before");
    EXPECT_EQ(RecordedTexts().back(), "GetDocumentFileSpec(pFilePath='before', 0) returning 1145393987 (0x44455343)");
    EXPECT_EQ(host.calls.Calls(), std::vector<std::string>{"GetDocumentFileSpecification()"});
}

TEST_F(DocumentFileTest, EmptyPathIsNoFailure) {
    path = "before";
    EXPECT_EQ(GetDocumentFileSpec(path, false), 0);
    EXPECT_EQ(path, "");
}

TEST_F(DocumentFileTest, FailureOfTheConversionIsTheHostsErrorObject) {
    host.currentPath = "C:/a.ai";
    host.calls.Fail("GetFullPath", 99);
    try {
        GetDocumentFileSpec(path, false);
        FAIL();
    } catch (const ai::Error& error) {
        EXPECT_EQ(error.Code(), 99);
    }
}

TEST_F(DocumentFileTest, ConversionAnswers0ForATextAndMinus1ForNone) {
    EXPECT_EQ(ConvertFilePathToString(host.MakePath("C:/a.ai"), path, false), 0);
    EXPECT_EQ(path, "C:/a.ai");
    EXPECT_EQ(ConvertFilePathToString(host.MakePath(""), path, false), -1);
    EXPECT_EQ(path, "");
    EXPECT_EQ(ConvertFilePathToString(ai::FilePathData{nullptr}, path, true), -1);
}

TEST_F(DocumentFileTest, SlashOrBackslashMakesAFilePathAndABareTitleDoesNot) {
    EXPECT_TRUE(HoldsPathSeparator("/only/forward"));
    EXPECT_TRUE(HoldsPathSeparator("C:\\a.ai"));
    EXPECT_FALSE(HoldsPathSeparator("Untitled-1"));
    EXPECT_FALSE(HoldsPathSeparator("C:a.ai"));
    EXPECT_FALSE(HoldsPathSeparator(""));
}

}  // namespace
