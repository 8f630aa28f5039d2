#include "doubles/host/suites/SuiteList.h"

#include <cstddef>
#include <string_view>

namespace simhost {

namespace {

// More slots than any of these suites has. None of their operations is offered; a call must only hit a trap.
constexpr int kUnknownSlotCount = 256;

constexpr SuiteRow kSuites[] = {
    {"ATE ApplicationPaint Suite", 1, kUnknownSlotCount},
    {"ATE CompFont Suite", 1, kUnknownSlotCount},
    {"ATE CompFontClass Suite", 1, kUnknownSlotCount},
    {"ATE CompFontClassSet Suite", 1, kUnknownSlotCount},
    {"ATE CompFontComponent Suite", 1, kUnknownSlotCount},
    {"ATE CompFontSet Suite", 1, kUnknownSlotCount},
    {"ATE GlyphRun Suite", 1, kUnknownSlotCount},
    {"ATE GlyphRunsIterator Suite", 1, kUnknownSlotCount},
    {"ATE MojiKumi Suite", 1, kUnknownSlotCount},
    {"ATE MojiKumiSet Suite", 1, kUnknownSlotCount},
    {"ATE TextFrame Suite", 101, kUnknownSlotCount},
    {"ATE TextFramesIterator Suite", 1, kUnknownSlotCount},
    {"ATE TextLine Suite", 2, kUnknownSlotCount},
    {"ATE TextLinesIterator Suite", 1, kUnknownSlotCount},
    {"ATE TextResources Suite", 1, kUnknownSlotCount},
    {"ATE ApplicationTextResources Suite", 1, kUnknownSlotCount},
    {"ATE DocumentTextResources Suite", 101, kUnknownSlotCount},
    {"ATE VersionInfo Suite", 1, kUnknownSlotCount},
    {"ATE ArrayApplicationPaintRef Suite", 1, kUnknownSlotCount},
    {"ATE ArrayReal Suite", 1, kUnknownSlotCount},
    {"ATE ArrayBool Suite", 1, kUnknownSlotCount},
    {"ATE ArrayInteger Suite", 1, kUnknownSlotCount},
    {"ATE ArrayLineCapType Suite", 1, kUnknownSlotCount},
    {"ATE ArrayFigureStyle Suite", 1, kUnknownSlotCount},
    {"ATE ArrayLineJoinType Suite", 1, kUnknownSlotCount},
    {"ATE ArrayWariChuJustification Suite", 1, kUnknownSlotCount},
    {"ATE ArrayStyleRunAlignment Suite", 1, kUnknownSlotCount},
    {"ATE ArrayAutoKernType Suite", 1, kUnknownSlotCount},
    {"ATE ArrayBaselineDirection Suite", 1, kUnknownSlotCount},
    {"ATE ArrayLanguage Suite", 1, kUnknownSlotCount},
    {"ATE ArrayFontCapsOption Suite", 1, kUnknownSlotCount},
    {"ATE ArrayFontBaselineOption Suite", 1, kUnknownSlotCount},
    {"ATE ArrayFontOpenTypePositionOption Suite", 1, kUnknownSlotCount},
    {"ATE ArrayUnderlinePosition Suite", 1, kUnknownSlotCount},
    {"ATE ArrayStrikethroughPosition Suite", 1, kUnknownSlotCount},
    {"ATE ArrayParagraphJustification Suite", 1, kUnknownSlotCount},
    {"ATE ArrayArrayReal Suite", 1, kUnknownSlotCount},
    {"ATE ArrayBurasagariType Suite", 1, kUnknownSlotCount},
    {"ATE ArrayPreferredKinsokuOrder Suite", 1, kUnknownSlotCount},
    {"ATE ArrayKinsokuRef Suite", 1, kUnknownSlotCount},
    {"ATE ArrayMojiKumiRef Suite", 1, kUnknownSlotCount},
    {"ATE ArrayMojiKumiSetRef Suite", 1, kUnknownSlotCount},
    {"ATE ArrayTabStopsRef Suite", 1, kUnknownSlotCount},
    {"ATE ArrayLeadingType Suite", 1, kUnknownSlotCount},
    {"ATE ArrayFontRef Suite", 1, kUnknownSlotCount},
    {"ATE ArrayGlyphID Suite", 1, kUnknownSlotCount},
    {"ATE ArrayRealPoint Suite", 1, kUnknownSlotCount},
    {"ATE ArrayRealMatrix Suite", 1, kUnknownSlotCount},
    {"ATE ArrayParagraphDirection Suite", 1, kUnknownSlotCount},
    {"ATE ArrayJustificationMethod Suite", 1, kUnknownSlotCount},
    {"ATE ArrayKashidaWidth Suite", 1, kUnknownSlotCount},
    {"ATE ArrayKashidas Suite", 1, kUnknownSlotCount},
    {"ATE ArrayDirOverride Suite", 1, kUnknownSlotCount},
    {"ATE ArrayDigitSet Suite", 1, kUnknownSlotCount},
    {"ATE ArrayDiacVPos Suite", 1, kUnknownSlotCount},
    {"ATE CharFeatures Suite", 101, 246},
    {"ATE CharInspector Suite", 101, kUnknownSlotCount},
    {"ATE CharStyle Suite", 1, kUnknownSlotCount},
    {"ATE CharStyles Suite", 1, kUnknownSlotCount},
    {"ATE CharStylesIterator Suite", 1, kUnknownSlotCount},
    {"ATE Find Suite", 101, kUnknownSlotCount},
    {"ATE Font Suite", 1, 6},
    {"ATE Glyph Suite", 1, kUnknownSlotCount},
    {"ATE Glyphs Suite", 1, kUnknownSlotCount},
    {"ATE GlyphsIterator Suite", 1, kUnknownSlotCount},
    {"ATE Kinsoku Suite", 1, kUnknownSlotCount},
    {"ATE KinsokuSet Suite", 1, kUnknownSlotCount},
    {"ATE ParaFeatures Suite", 101, kUnknownSlotCount},
    {"ATE Paragraph Suite", 1, kUnknownSlotCount},
    {"ATE ParagraphsIterator Suite", 1, kUnknownSlotCount},
    {"ATE ParaInspector Suite", 101, kUnknownSlotCount},
    {"ATE ParaStyle Suite", 1, kUnknownSlotCount},
    {"ATE ParaStyles Suite", 1, kUnknownSlotCount},
    {"ATE ParaStylesIterator Suite", 1, kUnknownSlotCount},
    {"ATE Spell Suite", 101, kUnknownSlotCount},
    {"ATE Stories Suite", 1, kUnknownSlotCount},
    {"ATE Story Suite", 1, kUnknownSlotCount},
    {"ATE TabStop Suite", 1, kUnknownSlotCount},
    {"ATE TabStops Suite", 1, kUnknownSlotCount},
    {"ATE TabStopsIterator Suite", 1, kUnknownSlotCount},
    {"ATE TextRange Suite", 1, 53},
    {"ATE TextRanges Suite", 1, kUnknownSlotCount},
    {"ATE TextRangesIterator Suite", 1, kUnknownSlotCount},
    {"ATE TextRunsIterator Suite", 1, 11},
    {"ATE WordsIterator Suite", 1, kUnknownSlotCount},
    {"ATE ArrayLine Suite", 1, kUnknownSlotCount},
    {"ATE ArrayComposerEngine Suite", 1, kUnknownSlotCount},
    {"AI File Path Suite", 5, 29},
    {"AI User Suite", 12, 52},
    {"AI Font Suite", 6, 64},
    {"AI Notifier Suite", 4, 9},
    {"AI Matching Art Suite", 7, 8},
    {"AI Placed Suite", 9, 22},
    {"AI Text Frame Suite", 4, 26},
    {"SP Blocks Suite", 2, 3},
    {"AI MdMemory Suite", 3, 6},
    {"AI Unicode String Suite", 8, 38},
    {"AI Document Suite", 16, 74},
    // Asked for by single operations only.
    {"AI Menu Suite", 11, 35},
    {"SP Plug-ins Suite", 6, 28},
    {"SP Interface Suite", 2, 4},
    {"AI File Format Suite", 14, 24},
    {"AI Timer Suite", 5, 9},
};

constexpr std::size_t kHeldCount = 98;
static_assert(std::string_view(kSuites[kHeldCount - 1].name) == "AI Document Suite");

}  // namespace

std::span<const SuiteRow> AllSuites() { return kSuites; }

std::span<const SuiteRow> HeldSuites() { return AllSuites().first(kHeldCount); }

}  // namespace simhost
