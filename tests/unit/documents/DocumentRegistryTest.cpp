#include "documents/DocumentRegistry.h"

#include <gtest/gtest.h>
#include <stdio.h>

#include <cstdarg>
#include <cstring>
#include <vector>

#include "doubles/common/ImportPatch.h"
#include "support/log/RecordingLogSink.h"

namespace {

const auto kDocument = reinterpret_cast<AIDocumentHandle>(0x00000001ABCD0001);
// The same low 32 bits, another document.
const auto kOther = reinterpret_cast<AIDocumentHandle>(0x00000002ABCD0001);

// Of the lines that hold a report, behind the operation's name and the document.
std::vector<int> sPrecisions;

int RememberPrecision(char*, std::size_t, std::size_t, const char* format, va_list arguments) {
    if (std::strstr(format, "'%.*s'") != nullptr) {
        static_cast<void>(va_arg(arguments, const char*));
        static_cast<void>(va_arg(arguments, unsigned));
        sPrecisions.push_back(va_arg(arguments, int));
    }
    return 0;
}

TEST(DocumentRegistryTest, StartsEmpty) { EXPECT_EQ(DocumentRegistrySize(), 0u); }

TEST(DocumentRegistryTest, PathOfAnUnknownDocumentIsEmptyAndLeavesADefaultRecord) {
    EXPECT_EQ(GetFilePathForDocumentHandle(kDocument), "");
    EXPECT_EQ(DocumentRegistrySize(), 1u);
}

TEST(DocumentRegistryTest, TimeOfAnUnknownDocumentIs0AndLeavesADefaultRecord) {
    EXPECT_EQ(GetTimestampForDocumentHandle(kDocument), 0);
    EXPECT_EQ(DocumentRegistrySize(), 1u);
}

TEST(DocumentRegistryTest, ReportOfAnUnknownDocumentIsEmptyAndLeavesADefaultRecord) {
    EXPECT_EQ(GetFontUsageForDocumentHandle(kDocument), "");
    EXPECT_EQ(DocumentRegistrySize(), 1u);
}

TEST(DocumentRegistryTest, DefaultRecordIsRemovedByForgetting) {
    GetFilePathForDocumentHandle(kDocument);
    ForgetDocumentHandle(kDocument);
    EXPECT_EQ(DocumentRegistrySize(), 0u);
}

TEST(DocumentRegistryTest, WhatIsSetIsReadBack) {
    SetFilePathForDocumentHandle(kDocument, "C:/a.ai");
    SetTimestampForDocumentHandle(kDocument, 1700000000);
    SetFontUsageForDocumentHandle(kDocument, "{}");
    EXPECT_EQ(GetFilePathForDocumentHandle(kDocument), "C:/a.ai");
    EXPECT_EQ(GetTimestampForDocumentHandle(kDocument), 1700000000);
    EXPECT_EQ(GetFontUsageForDocumentHandle(kDocument), "{}");
    EXPECT_EQ(DocumentRegistrySize(), 1u);
}

TEST(DocumentRegistryTest, EachSettingInsertsARecordWithDefaults) {
    SetTimestampForDocumentHandle(kDocument, 5);
    EXPECT_EQ(GetFilePathForDocumentHandle(kDocument), "");
    EXPECT_EQ(GetFontUsageForDocumentHandle(kDocument), "");
}

TEST(DocumentRegistryTest, TimeIsStoredZeroExtended) {
    SetTimestampForDocumentHandle(kDocument, 0xFFFFFFFF);
    EXPECT_EQ(GetTimestampForDocumentHandle(kDocument), 4294967295);
}

TEST(DocumentRegistryTest, DocumentsAreToldApartByTheWholeHandle) {
    SetFilePathForDocumentHandle(kDocument, "one");
    SetFilePathForDocumentHandle(kOther, "two");
    EXPECT_EQ(GetFilePathForDocumentHandle(kDocument), "one");
    EXPECT_EQ(GetFilePathForDocumentHandle(kOther), "two");
    EXPECT_EQ(DocumentRegistrySize(), 2u);
}

TEST(DocumentRegistryTest, ForgettingOneDocumentKeepsTheOther) {
    SetFilePathForDocumentHandle(kDocument, "one");
    SetFilePathForDocumentHandle(kOther, "two");
    ForgetDocumentHandle(kDocument);
    EXPECT_EQ(DocumentRegistrySize(), 1u);
    EXPECT_EQ(GetFilePathForDocumentHandle(kOther), "two");
}

TEST(DocumentRegistryTest, ForgettingTheOnlyRecordEmptiesTheRegistry) {
    SetFilePathForDocumentHandle(kDocument, "one");
    ForgetDocumentHandle(kDocument);
    EXPECT_EQ(DocumentRegistrySize(), 0u);
    EXPECT_EQ(GetFilePathForDocumentHandle(kDocument), "");
}

TEST(DocumentRegistryTest, ForgettingAnUnknownDocumentChangesNothingAndLogsNothing) {
    SetFilePathForDocumentHandle(kDocument, "one");
    ClearRecordedLog();
    ForgetDocumentHandle(kOther);
    EXPECT_EQ(DocumentRegistrySize(), 1u);
    EXPECT_TRUE(RecordedLog().empty());
}

TEST(DocumentRegistryTest, PathOperationsLogTheHandlesLowBits) {
    SetFilePathForDocumentHandle(kDocument, "C:/a.ai");
    GetFilePathForDocumentHandle(kDocument);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering SetFilePathForDocumentHandle(abcd0001, 'C:/a.ai')"},
                                 {-1, "Exiting SetFilePathForDocumentHandle()"},
                                 {1, "Entering GetFilePathForDocumentHandle(abcd0001)"},
                                 {-1, "GetFilePathForDocumentHandle(abcd0001) returning 'C:/a.ai'"},
                             }));
}

TEST(DocumentRegistryTest, TimeOperationsLogTheTimeInHexadecimal) {
    SetTimestampForDocumentHandle(kDocument, 0x1F);
    GetTimestampForDocumentHandle(kDocument);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering SetTimestampForDocumentHandle(abcd0001, 0x0000001f)"},
                                 {-1, "Exiting SetTimestampForDocumentHandle()"},
                                 {1, "Entering GetTimestampForDocumentHandle(abcd0001)"},
                                 {-1, "GetTimestampForDocumentHandle(abcd0001) returning 0x0000001f"},
                             }));
}

TEST(DocumentRegistryTest, ReportOperationsLogTheText) {
    SetFontUsageForDocumentHandle(kDocument, "{\"a\":1}");
    GetFontUsageForDocumentHandle(kDocument);
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{
                                 {1, "Entering SetFontUsageForDocumentHandle(abcd0001, '{\"a\":1}')"},
                                 {-1, "Exiting SetFontUsageForDocumentHandle()"},
                                 {1, "Entering GetFontUsageForDocumentHandle(abcd0001)"},
                                 {-1, "GetFontUsageForDocumentHandle(abcd0001) returning '{\"a\":1}'"},
                             }));
}

// A report may be much longer than a line of the log, which shows its beginning, as of any text.
TEST(DocumentRegistryTest, LineWithALongReportIsCutAsEveryLongLine) {
    const std::string report(200000, 'x');
    SetFontUsageForDocumentHandle(kDocument, report);
    EXPECT_EQ(GetFontUsageForDocumentHandle(kDocument), report);
    const auto cut = [](std::string line) { return (line + std::string(8191, 'x')).substr(0, 8191); };
    EXPECT_EQ(RecordedTexts(), (std::vector<std::string>{cut("Entering SetFontUsageForDocumentHandle(abcd0001, '"),
                                                         "Exiting SetFontUsageForDocumentHandle()",
                                                         "Entering GetFontUsageForDocumentHandle(abcd0001)",
                                                         cut("GetFontUsageForDocumentHandle(abcd0001) returning '")}));
}

// The longest report that a line shows whole, to its last character.
TEST(DocumentRegistryTest, LineWithAReportThatJustFitsIsWhole) {
    const std::string head = "Entering SetFontUsageForDocumentHandle(abcd0001, '";
    const std::string report = std::string(8191 - head.size() - 3, 'x') + "y";
    SetFontUsageForDocumentHandle(kDocument, report);
    EXPECT_EQ(RecordedTexts().front(), head + report + "')");
}

// The text behind the part that a line can show is not even looked at.
TEST(DocumentRegistryTest, FormatterIsToldHowMuchOfAReportToRead) {
    const ImportPatch patch("_vsnprintf_s", AsReplacement(RememberPrecision));
    SetFontUsageForDocumentHandle(kDocument, "{}");
    GetFontUsageForDocumentHandle(kDocument);
    EXPECT_EQ(sPrecisions, (std::vector<int>{8192, 8192}));
}

}  // namespace
