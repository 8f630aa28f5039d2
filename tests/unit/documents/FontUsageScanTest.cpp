#include "documents/FontUsageScan.h"

#include <stdexcept>

#include "doubles/common/AllocationFaults.h"
#include "host/ArtSuites.h"
#include "host/HeldSuites.h"
#include "support/host/HostFixture.h"

namespace {

constexpr std::int32_t kFailed = 352321536;  // 0x15000000

class FontUsageScanTest : public HostTest {
  protected:
    static std::vector<std::string> Names(const FontList& list) {
        std::vector<std::string> names;
        for (const FontRecord& record : list) {
            names.push_back(record.at("PostScriptName"));
        }
        return names;
    }
    std::vector<std::string> ScannedNames() {
        ExamineTextFramesInCurrentDocForFontUsage(fonts);
        return Names(fonts);
    }
    // One run, as the text engine would hand it to the scan.
    ATE::ITextRange Run(const std::string& font) {
        host.textFrames = {{font}};
        ATE::TextRangeRef frame = nullptr;
        EXPECT_EQ(sTextFrameSuite->GetATETextRange(host.TextFrame(0), &frame), 0);
        return ATE::ITextRange(frame).GetTextRunsIterator().Item();
    }
    std::int32_t Add(ATE::ITextRange run) { return AddNewFontNameFromTextArt(std::move(run), scanned, fonts); }

    ScannedFont scanned;
    FontList fonts;
    PlacedFileList placed;
};

// --- the whole document ---------------------------------------------------------------------------------------------

TEST_F(FontUsageScanTest, ReportHoldsFontsInOrderOfFirstAppearanceAndAllPlacedFiles) {
    host.textFrames = {{"B", "A"}, {"C", "B"}};
    host.placedFiles = {"C:/x.png", "C:/y.png", "C:/x.png"};
    EXPECT_EQ(CurrentDocumentFontUsage(),
              R"({"DocumentFonts":[{"PostScriptName":"B"},{"PostScriptName":"A"},{"PostScriptName":"C"}],)"
              R"("LinkedDocuments":["C:\/x.png","C:\/y.png","C:\/x.png"]})");
    EXPECT_EQ(RecordedLog().front(), (RecordedLine{1, "Entering CurrentDocumentFontUsage"}));
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "Exiting CurrentDocumentFontUsage"}));
}

TEST_F(FontUsageScanTest, TextIsScannedBeforePlacedArtAndBothAlways) {
    host.calls.Fail("GetMatchingArt", 1);
    CurrentDocumentFontUsage();
    EXPECT_EQ(host.calls.Calls(), (std::vector<std::string>{"GetMatchingArt(12 0 0, 1)", "GetMatchingArt(7 0 0, 1)"}));
}

TEST_F(FontUsageScanTest, EmptyDocumentWithoutHandlesHasNoReport) { EXPECT_EQ(CurrentDocumentFontUsage(), ""); }

TEST_F(FontUsageScanTest, EmptyDocumentWithHandlesHasAReportBecauseThePlacedScanSucceeds) {
    host.handleForNoMatches = true;
    EXPECT_EQ(CurrentDocumentFontUsage(), R"({"DocumentFonts":[],"LinkedDocuments":[]})");
}

TEST_F(FontUsageScanTest, TextAloneIsEnoughForAReport) {
    host.textFrames = {{"A"}};
    EXPECT_EQ(CurrentDocumentFontUsage(), R"({"DocumentFonts":[{"PostScriptName":"A"}],"LinkedDocuments":[]})");
}

TEST_F(FontUsageScanTest, PlacedArtAloneIsEnoughForAReport) {
    host.placedFiles = {"a"};
    EXPECT_EQ(CurrentDocumentFontUsage(), R"({"DocumentFonts":[],"LinkedDocuments":["a"]})");
}

TEST_F(FontUsageScanTest, DefaultFontInTheLastRunAndNoPlacedArtMeansNoReport) {
    host.defaultFonts[0] = "Default";
    host.textFrames = {{"A", "Default"}};
    EXPECT_EQ(CurrentDocumentFontUsage(), "");
}

TEST_F(FontUsageScanTest, DefaultFontInTheLastRunStillReportsWhenTheHostGivesAPlacedHandle) {
    host.defaultFonts[0] = "Default";
    host.textFrames = {{"A", "Default"}};
    host.handleForNoMatches = true;
    EXPECT_EQ(CurrentDocumentFontUsage(), R"({"DocumentFonts":[{"PostScriptName":"A"}],"LinkedDocuments":[]})");
}

// --- text frames ----------------------------------------------------------------------------------------------------

TEST_F(FontUsageScanTest, FrameScanLogsTheCountAndItsStatusSoFar) {
    host.textFrames = {{"A"}, {}};
    EXPECT_EQ(ExamineTextFramesInCurrentDocForFontUsage(fonts), 0);
    const std::vector<RecordedLine> log = RecordedLog();
    EXPECT_EQ(log[0], (RecordedLine{1, "Entering ExamineTextFramesInCurrentDocForFontUsage()"}));
    EXPECT_EQ(log[1], (RecordedLine{0,
                                    "sMatchingArt->GetMatchingArt(spec.type=kTextFrameArt, numSpecs=1, numMatches=2) "
                                    "returned 352321536"}));
    EXPECT_EQ(log[2], (RecordedLine{1, "Entering ExamineTextRangesInThisFrameForFontUsage"}));
    EXPECT_EQ(log[log.size() - 2].text, "ExamineTextRangesInThisFrameForFontUsage returning 0");
    EXPECT_EQ(log.back(), (RecordedLine{-1, "ExamineTextFramesInCurrentDocForFontUsage() returning 0"}));
}

TEST_F(FontUsageScanTest, HostsFailureToMatchIsAFailedScan) {
    host.textFrames = {{"A"}};
    host.calls.Fail("GetMatchingArt", 17);
    EXPECT_EQ(ExamineTextFramesInCurrentDocForFontUsage(fonts), kFailed);
    EXPECT_TRUE(fonts.empty());
    EXPECT_EQ(RecordedTexts()[1],
              "sMatchingArt->GetMatchingArt(spec.type=kTextFrameArt, numSpecs=1, numMatches=0) returned 352321536");
    EXPECT_EQ(RecordedTexts().back(), "ExamineTextFramesInCurrentDocForFontUsage() returning 352321536");
}

TEST_F(FontUsageScanTest, HandleOfAFailingHostIsNotScanned) {
    host.textFrames = {{"A"}};
    host.placedFiles = {"a"};
    host.calls.FailAlwaysAfterWork("GetMatchingArt", 17);
    EXPECT_EQ(ExamineTextFramesInCurrentDocForFontUsage(fonts), kFailed);
    EXPECT_EQ(ExamineCurrentDocForPlacedArt(placed), kFailed);
    EXPECT_TRUE(fonts.empty());
    EXPECT_TRUE(placed.empty());
    EXPECT_EQ(host.calls.Calls(), (std::vector<std::string>{"GetMatchingArt(12 0 0, 1)", "GetMatchingArt(7 0 0, 1)"}));
}

TEST_F(FontUsageScanTest, HandlesGoBackBeforeTheScansExitIsLogged) {
    host.textFrames = {{"A"}};
    host.placedFiles = {"a"};
    std::string lastLine;
    host.calls.During("MdMemoryDisposeHandle", [&] { lastLine = RecordedTexts().back(); });
    ExamineTextFramesInCurrentDocForFontUsage(fonts);
    EXPECT_EQ(lastLine, "ExamineTextRangesInThisFrameForFontUsage returning 0");
    EXPECT_EQ(RecordedTexts().back(), "ExamineTextFramesInCurrentDocForFontUsage() returning 0");
    ExamineCurrentDocForPlacedArt(placed);
    EXPECT_EQ(lastLine, "Placed object found: 'a'");
    EXPECT_EQ(RecordedTexts().back(), "ExamineCurrentDocForPlacedArt() returning 0");
    EXPECT_EQ(host.calls.Count("MdMemoryDisposeHandle"), 2);
}

TEST_F(FontUsageScanTest, NoHandleIsAFailedScanAndAnEmptyHandleToo) {
    EXPECT_EQ(ExamineTextFramesInCurrentDocForFontUsage(fonts), kFailed);
    host.handleForNoMatches = true;
    EXPECT_EQ(ExamineTextFramesInCurrentDocForFontUsage(fonts), kFailed);
    EXPECT_EQ(host.calls.Count("MdMemoryDisposeHandle"), 1);
}

TEST_F(FontUsageScanTest, FrameWithoutRunsLeaves0) {
    host.textFrames = {{}};
    EXPECT_EQ(ExamineTextFramesInCurrentDocForFontUsage(fonts), 0);
}

TEST_F(FontUsageScanTest, FrameWhoseTextCannotBeHadIsLoggedAndSkipped) {
    host.textFrames = {{"A"}, {"B"}, {"C"}};
    host.calls.Fail("GetATETextRange", 66, 2);
    EXPECT_EQ(ScannedNames(), (std::vector<std::string>{"A", "C"}));
    EXPECT_EQ(CountRecorded("ERROR: sTextFrameSuite->GetATETextRange(AIArtHandle index=1) returned 66"), 1);
}

TEST_F(FontUsageScanTest, StatusIsThatOfTheLastFrame) {
    host.textFrames = {{"A"}, {"B"}};
    host.calls.Fail("GetATETextRange", 66, 2);
    EXPECT_EQ(ExamineTextFramesInCurrentDocForFontUsage(fonts), 66);
}

// A text-engine exception in frame 3 does not stop the frames behind it, whichever operation throws.
class TextEngineFailureTest : public FontUsageScanTest, public testing::WithParamInterface<const char*> {};

TEST_P(TextEngineFailureTest, InOneFrameLeavesTheOtherFramesScanned) {
    host.textFrames = {{"A"}, {"B"}, {"C"}, {"D"}, {"E"}};
    // IsNotDone is asked twice a frame: before and after its one run.
    host.calls.Fail(GetParam(), 1234, std::string(GetParam()) == "IsNotDone" ? 5 : 3);
    EXPECT_EQ(ExamineTextFramesInCurrentDocForFontUsage(fonts), 0);
    const std::vector<std::string> names = Names(fonts);
    EXPECT_EQ(std::count(names.begin(), names.end(), "D"), 1);
    EXPECT_EQ(std::count(names.begin(), names.end(), "E"), 1);
    EXPECT_EQ(names.front(), "A");
}

TEST_P(TextEngineFailureTest, InTheLastFrameIsTheStatus) {
    host.textFrames = {{"A"}};
    host.calls.Fail(GetParam(), 1234);
    EXPECT_EQ(ExamineTextFramesInCurrentDocForFontUsage(fonts), 1234);
}

INSTANTIATE_TEST_SUITE_P(OutsideARun, TextEngineFailureTest,
                         testing::Values("GetTextRunsIterator", "IsNotDone", "Next", "Item"));

TEST_F(FontUsageScanTest, ExceptionBetweenRunsEndsTheFrame) {
    host.textFrames = {{"A", "B", "C"}};
    host.calls.Fail("Next", 55, 2);
    EXPECT_EQ(ExamineTextFramesInCurrentDocForFontUsage(fonts), 55);
    EXPECT_EQ(Names(fonts), (std::vector<std::string>{"A", "B"}));
}

TEST_F(FontUsageScanTest, OtherExceptionsPassToTheCallerAndNothingStaysOut) {
    host.textFrames = {{"A"}};
    host.calls.During("GetUniqueCharFeatures", [] { throw std::runtime_error("elsewhere"); });
    EXPECT_THROW(ExamineTextFramesInCurrentDocForFontUsage(fonts), std::runtime_error);
}

TEST_F(FontUsageScanTest, FailingRunIsWarnedAboutWithItsFrameAndTheScanGoesOn) {
    host.textFrames = {{"A"}, {"B", "C"}};
    host.calls.Fail("FontKeyFromFont", 9, 2);
    EXPECT_EQ(ScannedNames(), (std::vector<std::string>{"A", "C"}));
    EXPECT_EQ(CountRecorded("WARNING: for text frame 1, AddNewFontNameFromTextArt() returned 352321536"), 1);
}

TEST_F(FontUsageScanTest, ScanOfAFrameLogsEachStepAtItsLevel) {
    host.defaultFonts[0] = "Default";
    host.textFrames = {{"A", "Default"}};
    ExamineTextFramesInCurrentDocForFontUsage(fonts);
    EXPECT_EQ(
        RecordedLog(),
        (std::vector<RecordedLine>{
            {1, "Entering ExamineTextFramesInCurrentDocForFontUsage()"},
            {0, "sMatchingArt->GetMatchingArt(spec.type=kTextFrameArt, numSpecs=1, numMatches=1) returned 352321536"},
            {1, "Entering ExamineTextRangesInThisFrameForFontUsage"},
            {0, "GetTextRunFaceStyle(..., 'A') returning 0"},
            {1, "Entering CrossPluginUtils::CreateFontDataForOneFont('A')"},
            {-1, "Exiting CrossPluginUtils::CreateFontDataForOneFont()"},
            {1, "Entering CrossPluginUtils::AddFontToArray()"},
            {-1, "CrossPluginUtils::AddFontToArray() returning 1"},
            {0, "AddNewFontNameFromTextArt() added 'A'"},
            {0, "GetTextRunFaceStyle(..., 'Default') returning 0"},
            {0, "AddNewFontNameFromTextArt() ignoring 'Default' (Illustrator default font)."},
            {0, "WARNING: for text frame 0, AddNewFontNameFromTextArt() returned 352321536"},
            {-1, "ExamineTextRangesInThisFrameForFontUsage returning 352321536"},
            {-1, "ExamineTextFramesInCurrentDocForFontUsage() returning 352321536"},
        }));
}

// --- one run --------------------------------------------------------------------------------------------------------

TEST_F(FontUsageScanTest, NewFontIsAddedAndLogged) {
    EXPECT_EQ(Add(Run("Helvetica")), 0);
    EXPECT_EQ(Names(fonts), std::vector<std::string>{"Helvetica"});
    EXPECT_EQ(RecordedTexts().back(), "AddNewFontNameFromTextArt() added 'Helvetica'");
}

TEST_F(FontUsageScanTest, RepeatedFontIsIgnoredAndLoggedAndNoFailure) {
    Add(Run("Helvetica"));
    EXPECT_EQ(Add(Run("Helvetica")), 0);
    EXPECT_EQ(fonts.size(), 1u);
    EXPECT_EQ(RecordedTexts().back(), "AddNewFontNameFromTextArt() ignored duplicate font 'Helvetica'");
}

TEST_F(FontUsageScanTest, DefaultFontIsIgnoredLoggedAndAFailure) {
    host.defaultFonts[1] = "Default";
    EXPECT_EQ(Add(Run("Default")), kFailed);
    EXPECT_TRUE(fonts.empty());
    EXPECT_EQ(RecordedTexts().back(), "AddNewFontNameFromTextArt() ignoring 'Default' (Illustrator default font).");
}

TEST_F(FontUsageScanTest, RunInADefaultFontProducesTheCallersWarning) {
    host.defaultFonts[1] = "Default";
    host.textFrames = {{"Default"}};
    EXPECT_EQ(ExamineTextFramesInCurrentDocForFontUsage(fonts), kFailed);
    EXPECT_EQ(CountRecorded("WARNING: for text frame 0, AddNewFontNameFromTextArt() returned 352321536"), 1);
}

TEST_F(FontUsageScanTest, FontWithoutANameIsLoggedAndAFailure) {
    host.calls.Fail("GetUniqueCharFeatures", 4321);
    EXPECT_EQ(Add(Run("Helvetica")), kFailed);
    const std::vector<std::string> lines = RecordedTexts();
    EXPECT_EQ(lines, (std::vector<std::string>{"GetTextRunFaceStyle(..., '') returning 4321",
                                               "ERROR:  GetTextRunFaceStyle() returned 4321"}));
}

TEST_F(FontUsageScanTest, FontWithoutANameDoesNotBearTheNameOfTheRunBefore) {
    EXPECT_EQ(Add(Run("Helvetica")), 0);
    host.calls.Fail("GetUniqueCharFeatures", 4321);
    ClearRecordedLog();
    EXPECT_EQ(Add(Run("Optima")), kFailed);
    EXPECT_EQ(RecordedTexts().front(), "GetTextRunFaceStyle(..., '') returning 4321");
}

TEST_F(FontUsageScanTest, NameOfARunIsAskedForWith256Bytes) {
    std::string name;
    ATE::ITextRange run = Run("Helvetica");
    host.calls.Clear();
    EXPECT_EQ(GetTextRunFaceStyle(std::move(run), name), 0);
    EXPECT_EQ(name, "Helvetica");
    std::vector<std::string> calls = host.calls.Calls();
    calls.erase(std::remove(calls.begin(), calls.end(), "Release()"), calls.end());
    EXPECT_EQ(calls, (std::vector<std::string>{"GetUniqueCharFeatures()", "GetFont()", "FontKeyFromFont()",
                                               "GetPostScriptFontName(256)"}));
    EXPECT_EQ(RecordedTexts(), std::vector<std::string>{"GetTextRunFaceStyle(..., 'Helvetica') returning 0"});
}

TEST_F(FontUsageScanTest, NameThatFillsTheBufferIsCutBeforeItsEnd) {
    std::string name;
    EXPECT_EQ(GetTextRunFaceStyle(Run(std::string(300, 'n')), name), 0);
    EXPECT_EQ(name, std::string(255, 'n'));
}

TEST_F(FontUsageScanTest, EmptyNameIsAName) {
    std::string name = "before";
    EXPECT_EQ(GetTextRunFaceStyle(Run(""), name), 0);
    EXPECT_EQ(name, "");
}

class FaceStyleFailureTest : public FontUsageScanTest, public testing::WithParamInterface<const char*> {};

TEST_P(FaceStyleFailureTest, IsReturnedAndLeavesTheNameAlone) {
    ATE::ITextRange run = Run("Helvetica");
    host.calls.Fail(GetParam(), -77);
    std::string name = "before";
    EXPECT_EQ(GetTextRunFaceStyle(std::move(run), name), -77);
    EXPECT_EQ(name, "before");
    EXPECT_EQ(RecordedTexts().back(), "GetTextRunFaceStyle(..., 'before') returning -77");
}

INSTANTIATE_TEST_SUITE_P(InEachCall, FaceStyleFailureTest,
                         testing::Values("GetUniqueCharFeatures", "GetFont", "FontKeyFromFont",
                                         "GetPostScriptFontName"));

TEST_F(FontUsageScanTest, HostsCodesAreLoggedAsThrown) {
    host.calls.Fail("GetPostScriptFontName", 31);
    std::string name;
    GetTextRunFaceStyle(Run("Helvetica"), name);
    EXPECT_EQ(RecordedTexts().front(), "ERROR:  throwing 31.");
}

TEST_F(FontUsageScanTest, RunInAKnownFontTakesNoMemory) {
    const std::string known = "AvenirNextCondensed-MediumItalic";
    Add(Run(known));
    ATE::ITextRange run = Run(known);
    const std::size_t before = AllocationsMade();
    EXPECT_EQ(Add(std::move(run)), 0);
    EXPECT_EQ(AllocationsMade() - before, 0u);
    EXPECT_EQ(fonts.size(), 1u);
}

TEST_F(FontUsageScanTest, RunInADefaultFontTakesNoMemory) {
    host.defaultFonts[0] = "AvenirNextCondensed-MediumItalic";
    Add(Run(host.defaultFonts[0]));
    ATE::ITextRange run = Run(host.defaultFonts[0]);
    const std::size_t before = AllocationsMade();
    EXPECT_EQ(Add(std::move(run)), kFailed);
    EXPECT_EQ(AllocationsMade() - before, 0u);
}

TEST_F(FontUsageScanTest, RunMakesTheSame58CallsOfTheHostWhetherItsFontIsNewOrKnown) {
    host.textFrames = {{"A", "A"}};
    ExamineTextFramesInCurrentDocForFontUsage(fonts);
    const std::vector<std::string> calls = host.calls.Calls();
    const auto newFont = std::find(calls.begin(), calls.end(), "Item(0, 0)");
    const auto knownFont = std::find(calls.begin(), calls.end(), "Item(0, 1)");
    ASSERT_NE(knownFont, calls.end());
    EXPECT_EQ(knownFont - newFont, 58);
    // All but Item itself, up to the question behind the run.
    EXPECT_TRUE(std::equal(newFont + 1, newFont + 58, knownFont + 1));
    EXPECT_EQ(std::count(knownFont, calls.end(), "GetPostScriptFontName(128)"), 24);
}

// --- default fonts --------------------------------------------------------------------------------------------------

const std::vector<int> kScripts = {-2, -1, 0,  1,  2,  3,  4,  5,  6,  7,  9,  10,
                                   11, 12, 13, 14, 15, 16, 17, 25, 29, 32, 81, 85};

TEST_F(FontUsageScanTest, DefaultFontOfEachOfThe24ScriptsIsRecognised) {
    ASSERT_EQ(kScripts.size(), 24u);
    for (const int script : kScripts) {
        host.defaultFonts = {{script, "Default"}};
        EXPECT_TRUE(IsIllustratorDefaultFont("Default")) << script;
    }
}

TEST_F(FontUsageScanTest, ScriptsAreAskedInTheirOrderWith128BytesUntilOneMatches) {
    for (const int script : kScripts) {
        host.defaultFonts[script] = "Default " + std::to_string(script);
    }
    EXPECT_FALSE(IsIllustratorDefaultFont("Helvetica"));
    std::vector<std::string> expected;
    for (const int script : kScripts) {
        expected.push_back("GetDefaultFont(" + std::to_string(script) + ")");
        expected.push_back("GetPostScriptFontName(128)");
    }
    EXPECT_EQ(host.calls.Calls(), expected);

    host.calls.Clear();
    EXPECT_TRUE(IsIllustratorDefaultFont("Default 0"));
    EXPECT_EQ(host.calls.Calls().size(), 6u);
}

TEST_F(FontUsageScanTest, DefaultFontsOfOtherScriptsDoNotCount) {
    for (const int script : {8, 18, 19, 20, 21, 22, 23, 24}) {
        host.defaultFonts[script] = "Default";
    }
    host.defaultFonts[-2] = "Other";
    EXPECT_FALSE(IsIllustratorDefaultFont("Default"));
}

TEST_F(FontUsageScanTest, DefaultFontIsComparedCaseSensitively) {
    host.defaultFonts[-2] = "Default";
    EXPECT_FALSE(IsIllustratorDefaultFont("default"));
    EXPECT_FALSE(IsIllustratorDefaultFont("Default-Bold"));
}

class LongDefaultFontTest : public FontUsageScanTest, public testing::WithParamInterface<std::size_t> {};

// A name that does not fit fills the buffer of 128 bytes without a terminator.
TEST_P(LongDefaultFontTest, IsReadUpTo127Characters) {
    host.defaultFonts[0] = std::string(GetParam(), 'd');
    EXPECT_EQ(IsIllustratorDefaultFont(std::string(GetParam(), 'd')), GetParam() <= 127);
    EXPECT_EQ(IsIllustratorDefaultFont(std::string(127, 'd')), GetParam() >= 127);
    EXPECT_FALSE(IsIllustratorDefaultFont(std::string(125, 'd')));
}

INSTANTIATE_TEST_SUITE_P(Lengths, LongDefaultFontTest, testing::Values(126, 127, 128, 129, 300));

TEST_F(FontUsageScanTest, FailedDefaultFontQueryReusesTheKeyOfTheScriptBefore) {
    host.defaultFonts[-2] = "Default";
    // The first name cannot be had; the next script has no font, so its question goes to the first script's key.
    host.calls.Fail("GetPostScriptFontName", 3);
    EXPECT_TRUE(IsIllustratorDefaultFont("Default"));
    EXPECT_EQ(host.calls.Calls(), (std::vector<std::string>{"GetDefaultFont(-2)", "GetPostScriptFontName(128)",
                                                            "GetDefaultFont(-1)", "GetPostScriptFontName(128)"}));
}

TEST_F(FontUsageScanTest, BufferIsClearedBetweenScripts) {
    host.defaultFonts = {{-2, "Default"}, {-1, "Other"}};
    host.calls.Fail("GetPostScriptFontName", 3, 2);
    // With the first name left in the buffer the second question would match it.
    EXPECT_TRUE(IsIllustratorDefaultFont(""));
    EXPECT_EQ(host.calls.Count("GetDefaultFont"), 2);
}

// --- placed art -----------------------------------------------------------------------------------------------------

TEST_F(FontUsageScanTest, PlacedPathsAreListedInOrderWithRepeatsAndLogged) {
    host.placedFiles = {"C:/b.png", "C:/\xC3\xA4.png", "C:/b.png"};
    EXPECT_EQ(ExamineCurrentDocForPlacedArt(placed), 0);
    EXPECT_EQ(placed, host.placedFiles);
    EXPECT_EQ(
        RecordedLog(),
        (std::vector<RecordedLine>{
            {1, "Entering ExamineCurrentDocForPlacedArt()"},
            {0, "sMatchingArt->GetMatchingArt(spec.type=kPlacedArt, numSpecs=1, numMatches=3) returned 352321536"},
            {0, "Placed object found: 'C:/b.png'"},
            {0, "Placed object found: 'C:/\xC3\xA4.png'"},
            {0, "Placed object found: 'C:/b.png'"},
            {-1, "ExamineCurrentDocForPlacedArt() returning 0"},
        }));
}

TEST_F(FontUsageScanTest, PlacedPathThatCannotBeHadIsDroppedAndMarksTheScanAsFailed) {
    host.placedFiles = {"a", "b", "c"};
    host.calls.Fail("GetPlacedFilePathFromArt", 4, 2);
    EXPECT_EQ(ExamineCurrentDocForPlacedArt(placed), kFailed);
    EXPECT_EQ(placed, (PlacedFileList{"a", "c"}));
    EXPECT_EQ(CountRecorded("WARNING: sPlacedSuite->GetPlacedFilePathFromArt() failed."), 1);
}

TEST_F(FontUsageScanTest, FailedPlacedScanStillReportsWhatItFoundWhenTheTextScanSucceeded) {
    host.textFrames = {{"A"}};
    host.placedFiles = {"a", "b"};
    host.calls.Fail("GetPlacedFilePathFromArt", 4);
    EXPECT_EQ(CurrentDocumentFontUsage(), R"({"DocumentFonts":[{"PostScriptName":"A"}],"LinkedDocuments":["b"]})");
}

TEST_F(FontUsageScanTest, NoPlacedHandleIsAFailedScanAndAnEmptyOneIsNot) {
    EXPECT_EQ(ExamineCurrentDocForPlacedArt(placed), kFailed);
    EXPECT_EQ(RecordedTexts().back(), "ExamineCurrentDocForPlacedArt() returning 352321536");
    host.handleForNoMatches = true;
    EXPECT_EQ(ExamineCurrentDocForPlacedArt(placed), 0);
    EXPECT_EQ(RecordedTexts().back(), "ExamineCurrentDocForPlacedArt() returning 0");
}

TEST_F(FontUsageScanTest, HostsFailureToMatchPlacedArtIsAFailedScan) {
    host.placedFiles = {"a"};
    host.calls.Fail("GetMatchingArt", 8);
    EXPECT_EQ(ExamineCurrentDocForPlacedArt(placed), kFailed);
    EXPECT_TRUE(placed.empty());
}

}  // namespace
