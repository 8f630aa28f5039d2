#include "frame/base/Suites.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frame/base/SuiteOperations.h"
#include "host/HeldSuites.h"
#include "support/host/TestHost.h"
#include "support/log/RecordingLogSink.h"

namespace {

// The table as the host knows it, written independently of the code under test.
const std::vector<std::string> kTextEngineWords = {"ApplicationPaint",
                                                   "CompFont",
                                                   "CompFontClass",
                                                   "CompFontClassSet",
                                                   "CompFontComponent",
                                                   "CompFontSet",
                                                   "GlyphRun",
                                                   "GlyphRunsIterator",
                                                   "MojiKumi",
                                                   "MojiKumiSet",
                                                   "TextFrame",
                                                   "TextFramesIterator",
                                                   "TextLine",
                                                   "TextLinesIterator",
                                                   "TextResources",
                                                   "ApplicationTextResources",
                                                   "DocumentTextResources",
                                                   "VersionInfo",
                                                   "ArrayApplicationPaintRef",
                                                   "ArrayReal",
                                                   "ArrayBool",
                                                   "ArrayInteger",
                                                   "ArrayLineCapType",
                                                   "ArrayFigureStyle",
                                                   "ArrayLineJoinType",
                                                   "ArrayWariChuJustification",
                                                   "ArrayStyleRunAlignment",
                                                   "ArrayAutoKernType",
                                                   "ArrayBaselineDirection",
                                                   "ArrayLanguage",
                                                   "ArrayFontCapsOption",
                                                   "ArrayFontBaselineOption",
                                                   "ArrayFontOpenTypePositionOption",
                                                   "ArrayUnderlinePosition",
                                                   "ArrayStrikethroughPosition",
                                                   "ArrayParagraphJustification",
                                                   "ArrayArrayReal",
                                                   "ArrayBurasagariType",
                                                   "ArrayPreferredKinsokuOrder",
                                                   "ArrayKinsokuRef",
                                                   "ArrayMojiKumiRef",
                                                   "ArrayMojiKumiSetRef",
                                                   "ArrayTabStopsRef",
                                                   "ArrayLeadingType",
                                                   "ArrayFontRef",
                                                   "ArrayGlyphID",
                                                   "ArrayRealPoint",
                                                   "ArrayRealMatrix",
                                                   "ArrayParagraphDirection",
                                                   "ArrayJustificationMethod",
                                                   "ArrayKashidaWidth",
                                                   "ArrayKashidas",
                                                   "ArrayDirOverride",
                                                   "ArrayDigitSet",
                                                   "ArrayDiacVPos",
                                                   "CharFeatures",
                                                   "CharInspector",
                                                   "CharStyle",
                                                   "CharStyles",
                                                   "CharStylesIterator",
                                                   "Find",
                                                   "Font",
                                                   "Glyph",
                                                   "Glyphs",
                                                   "GlyphsIterator",
                                                   "Kinsoku",
                                                   "KinsokuSet",
                                                   "ParaFeatures",
                                                   "Paragraph",
                                                   "ParagraphsIterator",
                                                   "ParaInspector",
                                                   "ParaStyle",
                                                   "ParaStyles",
                                                   "ParaStylesIterator",
                                                   "Spell",
                                                   "Stories",
                                                   "Story",
                                                   "TabStop",
                                                   "TabStops",
                                                   "TabStopsIterator",
                                                   "TextRange",
                                                   "TextRanges",
                                                   "TextRangesIterator",
                                                   "TextRunsIterator",
                                                   "WordsIterator",
                                                   "ArrayLine",
                                                   "ArrayComposerEngine"};

int VersionOf(const std::string& word) {
    for (const char* newer : {"TextFrame", "DocumentTextResources", "CharFeatures", "CharInspector", "Find",
                              "ParaFeatures", "ParaInspector", "Spell"}) {
        if (word == newer) {
            return 101;
        }
    }
    return word == "TextLine" ? 2 : 1;
}

// What the whole table looks like as calls of one basic-suite operation.
std::vector<std::string> WholeTable(const std::string& operation) {
    std::vector<std::string> calls;
    const auto add = [&](const std::string& name, int version) {
        calls.push_back(operation + "('" + name + "', " + std::to_string(version) + ")");
    };
    for (const std::string& word : kTextEngineWords) {
        add("ATE " + word + " Suite", VersionOf(word));
    }
    add("AI File Path Suite", 5);
    add("AI User Suite", 12);
    add("AI Font Suite", 6);
    add("AI Notifier Suite", 4);
    add("AI Matching Art Suite", 7);
    add("AI Placed Suite", 9);
    add("AI Text Frame Suite", 4);
    add("SP Blocks Suite", 2);
    add("AI MdMemory Suite", 3);
    add("AI Unicode String Suite", 8);
    add("AI Document Suite", 16);
    return calls;
}

class SuitesTest : public testing::Test {
  protected:
    SuitesTest() { sBasicSuite = TestHost::Basic(); }
    void TearDown() override {
        host.EndFaults();
        if (SuitesAreHeld()) {
            ReleaseSuites();
        }
    }

    static int HeldRows() {
        int held = 0;
        for (const SuiteRow& row : SuiteTable()) {
            held += *row.target != nullptr ? 1 : 0;
        }
        return held;
    }

    TestHost host;
};

TEST_F(SuitesTest, AcquiresAll98RowsInTableOrder) {
    ASSERT_EQ(WholeTable("").size(), 98u);
    EXPECT_EQ(AcquireSuites(), 0);
    EXPECT_EQ(host.calls.Calls(), WholeTable("AcquireSuite"));
    EXPECT_EQ(HeldRows(), 98);
    EXPECT_TRUE(SuitesAreHeld());
    EXPECT_TRUE(RecordedLog().empty());
}

TEST_F(SuitesTest, EachRowHasAVariableOfItsOwn) {
    std::vector<const void**> targets;
    for (const SuiteRow& row : SuiteTable()) {
        EXPECT_EQ(std::count(targets.begin(), targets.end(), row.target), 0) << row.name;
        targets.push_back(row.target);
    }
}

TEST_F(SuitesTest, VariablesOfUsedSuitesReceiveTheSuiteOfTheirName) {
    const auto targetOf = [](const std::string& name) -> const void** {
        for (const SuiteRow& row : SuiteTable()) {
            if (row.name == name) {
                return row.target;
            }
        }
        return nullptr;
    };
    EXPECT_EQ(targetOf("AI Document Suite"), sDocumentSuite.Target());
    EXPECT_EQ(targetOf("AI File Path Suite"), sFilePathSuite.Target());
    EXPECT_EQ(targetOf("AI Font Suite"), sFontSuite.Target());
    EXPECT_EQ(targetOf("AI Matching Art Suite"), sMatchingArt.Target());
    EXPECT_EQ(targetOf("AI MdMemory Suite"), sMdMemorySuite.Target());
    EXPECT_EQ(targetOf("AI Placed Suite"), sPlacedSuite.Target());
    EXPECT_EQ(targetOf("AI Text Frame Suite"), sTextFrameSuite.Target());
    EXPECT_EQ(targetOf("AI Unicode String Suite"), sUnicodeStringSuite.Target());
    EXPECT_EQ(targetOf("ATE TextRange Suite"), ATE::sTextRangeSuite.Target());
    EXPECT_EQ(targetOf("ATE TextRunsIterator Suite"), ATE::sTextRunsIteratorSuite.Target());
    EXPECT_EQ(targetOf("ATE CharFeatures Suite"), ATE::sCharFeaturesSuite.Target());
    EXPECT_EQ(targetOf("ATE Font Suite"), ATE::sFontSuite.Target());
}

TEST_F(SuitesTest, SecondAcquisitionAfterSuccessCallsTheHostZeroTimes) {
    AcquireSuites();
    host.calls.Clear();
    EXPECT_EQ(AcquireSuites(), 0);
    EXPECT_TRUE(host.calls.Calls().empty());
}

TEST_F(SuitesTest, RefusalOfRow50KeepsTheRowsBeforeItAndStartsOverNextTime) {
    const std::string row50 = "ATE ArrayJustificationMethod Suite";
    ASSERT_EQ(SuiteTable()[49].name, row50);
    host.RefuseSuite(row50, 0x53214E4F);
    host.ExpectBroken(Rule::kSuiteLeak);

    EXPECT_EQ(AcquireSuites(), 0x53214E4F);
    EXPECT_EQ(host.calls.Calls().size(), 50u);
    EXPECT_EQ(HeldRows(), 49);
    for (std::size_t i = 49; i < SuiteTable().size(); ++i) {
        EXPECT_EQ(*SuiteTable()[i].target, nullptr) << SuiteTable()[i].name;
    }
    EXPECT_FALSE(SuitesAreHeld());
    const RecordedLine line{0, "Error 0x53214e4f acquiring suite 'ATE ArrayJustificationMethod Suite', version 1"};
    EXPECT_EQ(RecordedLog(), std::vector{line});

    host.calls.Clear();
    EXPECT_EQ(AcquireSuites(), 0x53214E4F);
    EXPECT_EQ(host.calls.Calls().front(), "AcquireSuite('ATE ApplicationPaint Suite', 1)");
    EXPECT_EQ(host.calls.Calls().size(), 50u);
    // Not released in between, so the host counts them twice: intentional, the rows are acquired anew.
    EXPECT_EQ(host.HeldSuites().at("ATE ApplicationPaint Suite"), 2);
    EXPECT_EQ(RecordedLog(), (std::vector{line, line}));
}

TEST_F(SuitesTest, RefusalOfARowWithAVersionAbove100NamesThatVersion) {
    host.RefuseSuite("ATE CharFeatures Suite", 5);
    host.ExpectBroken(Rule::kSuiteLeak);
    EXPECT_EQ(AcquireSuites(), 5);
    EXPECT_EQ(RecordedTexts(),
              std::vector<std::string>{"Error 0x00000005 acquiring suite 'ATE CharFeatures Suite', version 101"});
}

TEST_F(SuitesTest, AcquiringSucceedsOnceTheHostOffersTheMissingSuite) {
    host.RefuseSuite("AI Document Suite", 9);
    host.ExpectBroken(Rule::kSuiteLeak);
    AcquireSuites();
    host.calls.ForgetEvents();
    EXPECT_EQ(AcquireSuites(), 0);
    EXPECT_TRUE(SuitesAreHeld());
}

TEST_F(SuitesTest, ReleasesAllRowsInTableOrderAndNullsThem) {
    AcquireSuites();
    host.calls.Clear();
    EXPECT_EQ(ReleaseSuites(), 0);
    EXPECT_EQ(host.calls.Calls(), WholeTable("ReleaseSuite"));
    EXPECT_EQ(HeldRows(), 0);
    EXPECT_TRUE(host.HeldSuites().empty());
    EXPECT_FALSE(SuitesAreHeld());
}

TEST_F(SuitesTest, TableCanBeAcquiredAgainAfterARelease) {
    AcquireSuites();
    ReleaseSuites();
    host.calls.Clear();
    EXPECT_EQ(AcquireSuites(), 0);
    EXPECT_EQ(host.calls.Calls().size(), 98u);
}

TEST_F(SuitesTest, ReleaseSkipsRowsThatHoldNothing) {
    AcquireSuites();
    *sUserSuite.Target() = nullptr;
    host.ExpectBroken(Rule::kSuiteLeak);
    host.calls.Clear();
    EXPECT_EQ(ReleaseSuites(), 0);
    EXPECT_EQ(host.calls.Calls().size(), 97u);
}

TEST_F(SuitesTest, ReleasingATableNeverAcquiredWrapsTheCountAndStopsLaterAcquisition) {
    EXPECT_EQ(ReleaseSuites(), 0);
    EXPECT_TRUE(host.calls.Calls().empty());
    // The count stands at 4294967295, which is not 0.
    EXPECT_EQ(AcquireSuites(), 0);
    EXPECT_TRUE(host.calls.Calls().empty());
    EXPECT_FALSE(SuitesAreHeld());
    // 4294967294 releases later it would be 1; one is enough to see that it goes down and nothing is released.
    EXPECT_EQ(ReleaseSuites(), 0);
    EXPECT_TRUE(host.calls.Calls().empty());
}

TEST_F(SuitesTest, RefusedReleaseStopsTheLoopAndLeavesTheRestHeld) {
    AcquireSuites();
    host.calls.Clear();
    host.RefuseRelease("ATE CompFontClass Suite", 77);  // row 3
    EXPECT_EQ(ReleaseSuites(), 77);
    EXPECT_EQ(host.calls.Calls().size(), 3u);
    EXPECT_EQ(HeldRows(), 96);
    EXPECT_TRUE(SuitesAreHeld());

    // The count is still 1: the next release goes on where the refusal was.
    host.calls.ForgetEvents();
    EXPECT_EQ(ReleaseSuites(), 0);
    EXPECT_EQ(HeldRows(), 0);
}

}  // namespace
