#include "documents/FontUsageReport.h"

#include <gtest/gtest.h>
#include <utf8cpp/utf8.h>

#include <iterator>
#include <memory>

#include "doubles/common/AllocationFaults.h"
#include "json/JsonParser.h"
#include "json/JsonWriter.h"
#include "support/log/RecordingLogSink.h"
#include "support/TextConversion.h"

namespace {

FontRecord Font(const std::string& name) { return {{"PostScriptName", name}}; }

TEST(FontUsageReportTest, FontDataIsTheNameAndIsLogged) {
    FontRecord record;
    CrossPluginUtils::CreateFontDataForOneFont("Helvetica", record);
    EXPECT_EQ(record, Font("Helvetica"));
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering CrossPluginUtils::CreateFontDataForOneFont('Helvetica')"},
                                 {-1, "Exiting CrossPluginUtils::CreateFontDataForOneFont()"},
                             }));
}

TEST(FontUsageReportTest, FontDataOverwritesTheNameAndKeepsOtherEntries) {
    FontRecord record = {{"PostScriptName", "old"}, {"other", "kept"}};
    CrossPluginUtils::CreateFontDataForOneFont("new", record);
    EXPECT_EQ(record, (FontRecord{{"PostScriptName", "new"}, {"other", "kept"}}));
}

TEST(FontUsageReportTest, FontDataOfTheRecordsOwnNameChangesNothing) {
    FontRecord record = Font("Helvetica");
    CrossPluginUtils::CreateFontDataForOneFont(record["PostScriptName"], record);
    EXPECT_EQ(record, Font("Helvetica"));
}

TEST(FontUsageReportTest, RecordUsedAgainForAKnownFontTakesNoMemory) {
    FontList fonts;
    FontRecord record;
    const std::string longer = "AvenirNextCondensed-MediumItalic";
    const std::string shorter = "AvenirNextCondensed-Bold";
    for (const std::string& name : {longer, shorter}) {
        CrossPluginUtils::CreateFontDataForOneFont(name, record);
        CrossPluginUtils::AddFontToArray(record, true, fonts);
    }
    const std::size_t before = AllocationsMade();
    CrossPluginUtils::CreateFontDataForOneFont(longer, record);
    EXPECT_FALSE(CrossPluginUtils::AddFontToArray(record, true, fonts));
    CrossPluginUtils::CreateFontDataForOneFont(shorter, record);
    EXPECT_FALSE(CrossPluginUtils::AddFontToArray(record, true, fonts));
    EXPECT_EQ(AllocationsMade() - before, 0u);
    EXPECT_EQ(fonts, (FontList{Font(longer), Font(shorter)}));
}

TEST(FontUsageReportTest, RepeatedNameIsADuplicate) {
    FontList fonts;
    EXPECT_TRUE(CrossPluginUtils::AddFontToArray(Font("Helvetica"), true, fonts));
    EXPECT_FALSE(CrossPluginUtils::AddFontToArray(Font("Helvetica"), true, fonts));
    EXPECT_EQ(fonts, (FontList{Font("Helvetica")}));
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering CrossPluginUtils::AddFontToArray()"},
                                 {-1, "CrossPluginUtils::AddFontToArray() returning 1"},
                                 {1, "Entering CrossPluginUtils::AddFontToArray()"},
                                 {-1, "CrossPluginUtils::AddFontToArray() returning 0"},
                             }));
}

TEST(FontUsageReportTest, NameThatDiffersInLetterCaseOrLengthIsAnotherFont) {
    FontList fonts = {Font("Helvetica")};
    EXPECT_TRUE(CrossPluginUtils::AddFontToArray(Font("helvetica"), true, fonts));
    EXPECT_TRUE(CrossPluginUtils::AddFontToArray(Font("Helvetica-Bold"), true, fonts));
    EXPECT_TRUE(CrossPluginUtils::AddFontToArray(Font(std::string("Helvetica\0", 10)), true, fonts));
    EXPECT_EQ(fonts.size(), 4u);
}

TEST(FontUsageReportTest, DuplicateFurtherDownTheListIsFound) {
    FontList fonts = {Font("A"), Font("B"), Font("C")};
    EXPECT_FALSE(CrossPluginUtils::AddFontToArray(Font("C"), true, fonts));
    EXPECT_EQ(fonts, (FontList{Font("A"), Font("B"), Font("C")}));
}

TEST(FontUsageReportTest, WithoutTheCheckTheSameRecordIsAppendedAnyNumberOfTimes) {
    FontList fonts;
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(CrossPluginUtils::AddFontToArray(Font("Helvetica"), false, fonts));
    }
    EXPECT_EQ(fonts, (FontList{Font("Helvetica"), Font("Helvetica"), Font("Helvetica")}));
}

TEST(FontUsageReportTest, MissingNameCountsAsEmptyAndStaysMissing) {
    FontList fonts;
    EXPECT_TRUE(CrossPluginUtils::AddFontToArray({}, true, fonts));
    EXPECT_FALSE(CrossPluginUtils::AddFontToArray({{"other", "x"}}, true, fonts));
    EXPECT_FALSE(CrossPluginUtils::AddFontToArray(Font(""), true, fonts));
    EXPECT_EQ(fonts, (FontList{FontRecord{}}));
}

TEST(FontUsageReportTest, EmptyListsGiveEmptyArrays) {
    EXPECT_EQ(BuildFontUsageReport({}, {}), R"({"DocumentFonts":[],"LinkedDocuments":[]})");
}

TEST(FontUsageReportTest, FontsWithoutLinks) {
    EXPECT_EQ(BuildFontUsageReport({Font("B"), Font("A")}, {}),
              R"({"DocumentFonts":[{"PostScriptName":"B"},{"PostScriptName":"A"}],"LinkedDocuments":[]})");
}

TEST(FontUsageReportTest, LinksWithoutFontsKeepOrderAndRepeats) {
    EXPECT_EQ(BuildFontUsageReport({}, {"b", "a", "b"}), R"({"DocumentFonts":[],"LinkedDocuments":["b","a","b"]})");
}

TEST(FontUsageReportTest, RecordWithoutANameGivesAnEmptyName) {
    EXPECT_EQ(BuildFontUsageReport({{{"other", "x"}}}, {}),
              R"({"DocumentFonts":[{"PostScriptName":""}],"LinkedDocuments":[]})");
}

TEST(FontUsageReportTest, NonAsciiTextComesOutAsTheSameUtf8) {
    // Two, three and four bytes.
    const std::string text = "\xC3\xA9\xE6\x96\x87\xF0\x9F\x8E\xA8";
    EXPECT_EQ(BuildFontUsageReport({Font(text)}, {text}),
              R"({"DocumentFonts":[{"PostScriptName":")" + text + R"("}],"LinkedDocuments":[")" + text + R"("]})");
}

TEST(FontUsageReportTest, SlashBackslashQuoteAndControlCharacterAreEscaped) {
    EXPECT_EQ(BuildFontUsageReport({}, {"C:\\a/b\"c\x01\t.ai"}),
              R"({"DocumentFonts":[],"LinkedDocuments":["C:\\a\/b\"c\u0001\t.ai"]})");
}

// It is what the writer makes of a tree with this content, whatever the texts hold.
TEST(FontUsageReportTest, IsTheTextThatTheWriterMakesOfItsTree) {
    FontList fonts;
    PlacedFileList placed;
    for (char32_t code = 1; code < 0x300; ++code) {
        std::string text = "C:\\";
        utf8::append(code, std::back_inserter(text));
        fonts.Append(Font(text + "-Bold"));
        placed.push_back(text + std::string(code, '/'));
    }
    const std::wstring report = Utf16FromUtf8(BuildFontUsageReport(fonts, placed));
    const std::unique_ptr<JsonValue> tree = ParseJson(report);
    ASSERT_NE(tree, nullptr);
    EXPECT_TRUE(WriteJson(tree.get()) == report);
}

TEST(FontUsageReportTest, TakesAsFewBlocksOfMemoryForThousandsAsForTen) {
    const auto blocksFor = [](int count) {
        FontList fonts;
        PlacedFileList placed;
        for (int n = 0; n < count; ++n) {
            const std::string number = std::to_string(10000 + n);
            fonts.Append(Font("AvenirNextCondensed" + number + "-MediumItalic"));
            placed.push_back("C:\\Users\\designer\\Documents\\Catalogue\\picture " + number + ".psd");
        }
        const std::size_t before = AllocationsMade();
        EXPECT_FALSE(BuildFontUsageReport(fonts, placed).empty());
        return AllocationsMade() - before;
    };
    // The report in each of its encodings, and a place to convert the names in and one for the paths.
    EXPECT_EQ(blocksFor(10), 4u);
    EXPECT_EQ(blocksFor(2000), 4u);
}

TEST(FontUsageReportTest, InvalidUtf8IsTheLibrarysException) {
    EXPECT_THROW(BuildFontUsageReport({Font("\xFF")}, {}), utf8::invalid_utf8);
    EXPECT_THROW(BuildFontUsageReport({}, {"\xE6\x96"}), utf8::not_enough_room);
    EXPECT_THROW(BuildFontUsageReport({}, {"\xF7\xBF\xBF\xBF"}), utf8::invalid_code_point);
}

}  // namespace
