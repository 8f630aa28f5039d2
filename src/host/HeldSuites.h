// The host suites that the plug-in holds from the first message to shut-down: one module-wide variable each. The suite
// table of the frame fills and clears them; code that uses a suite reads its variable directly.
// Thread: main.
#pragma once

#include "host/HostTypes.h"

struct AIDocumentSuite;
struct AIFilePathSuite;
struct AIFontSuite;
struct AIMatchingArtSuite;
struct AIMdMemorySuite;
struct AINotifierSuite;
struct AIPlacedSuite;
struct AITextFrameSuite;
struct AIUnicodeStringSuite;
struct SPBlocksSuite;
namespace ATE {
struct CharFeaturesSuite;
struct FontSuite;
struct TextRangeSuite;
struct TextRunsIteratorSuite;
}  // namespace ATE

// A suite that is held but never called.
struct OpaqueSuite;

// Throws SuiteNotHeld. Out of line, so that the use of a suite stays one comparison and one call.
[[noreturn]] void ThrowSuiteNotHeld();

// The variable of one suite: null until acquired, null again after release.
template <class Suite>
class HeldSuite {
  public:
    constexpr HeldSuite() noexcept = default;
    HeldSuite(const HeldSuite&) = delete;
    HeldSuite& operator=(const HeldSuite&) = delete;

    explicit operator bool() const noexcept { return mTable != nullptr; }

    // The suite's operations. Throws SuiteNotHeld while the variable is null.
    const Suite* operator->() const {
        if (mTable == nullptr) {
            ThrowSuiteNotHeld();
        }
        return static_cast<const Suite*>(mTable);
    }

    // Where the host's AcquireSuite writes.
    const void** Target() noexcept { return &mTable; }

  private:
    const void* mTable = nullptr;
};

// The text engine's suites in the order in which they are acquired: word of the name, version, type. The host's name is
// "ATE " + word + " Suite", the variable's name is s + word + Suite.
// clang-format off
#define QUORVEL_TEXT_ENGINE_SUITES(SUITE)                       \
    SUITE(ApplicationPaint, 1, OpaqueSuite)                     \
    SUITE(CompFont, 1, OpaqueSuite)                             \
    SUITE(CompFontClass, 1, OpaqueSuite)                        \
    SUITE(CompFontClassSet, 1, OpaqueSuite)                     \
    SUITE(CompFontComponent, 1, OpaqueSuite)                    \
    SUITE(CompFontSet, 1, OpaqueSuite)                          \
    SUITE(GlyphRun, 1, OpaqueSuite)                             \
    SUITE(GlyphRunsIterator, 1, OpaqueSuite)                    \
    SUITE(MojiKumi, 1, OpaqueSuite)                             \
    SUITE(MojiKumiSet, 1, OpaqueSuite)                          \
    SUITE(TextFrame, 101, OpaqueSuite)                          \
    SUITE(TextFramesIterator, 1, OpaqueSuite)                   \
    SUITE(TextLine, 2, OpaqueSuite)                             \
    SUITE(TextLinesIterator, 1, OpaqueSuite)                    \
    SUITE(TextResources, 1, OpaqueSuite)                        \
    SUITE(ApplicationTextResources, 1, OpaqueSuite)             \
    SUITE(DocumentTextResources, 101, OpaqueSuite)              \
    SUITE(VersionInfo, 1, OpaqueSuite)                          \
    SUITE(ArrayApplicationPaintRef, 1, OpaqueSuite)             \
    SUITE(ArrayReal, 1, OpaqueSuite)                            \
    SUITE(ArrayBool, 1, OpaqueSuite)                            \
    SUITE(ArrayInteger, 1, OpaqueSuite)                         \
    SUITE(ArrayLineCapType, 1, OpaqueSuite)                     \
    SUITE(ArrayFigureStyle, 1, OpaqueSuite)                     \
    SUITE(ArrayLineJoinType, 1, OpaqueSuite)                    \
    SUITE(ArrayWariChuJustification, 1, OpaqueSuite)            \
    SUITE(ArrayStyleRunAlignment, 1, OpaqueSuite)               \
    SUITE(ArrayAutoKernType, 1, OpaqueSuite)                    \
    SUITE(ArrayBaselineDirection, 1, OpaqueSuite)               \
    SUITE(ArrayLanguage, 1, OpaqueSuite)                        \
    SUITE(ArrayFontCapsOption, 1, OpaqueSuite)                  \
    SUITE(ArrayFontBaselineOption, 1, OpaqueSuite)              \
    SUITE(ArrayFontOpenTypePositionOption, 1, OpaqueSuite)      \
    SUITE(ArrayUnderlinePosition, 1, OpaqueSuite)               \
    SUITE(ArrayStrikethroughPosition, 1, OpaqueSuite)           \
    SUITE(ArrayParagraphJustification, 1, OpaqueSuite)          \
    SUITE(ArrayArrayReal, 1, OpaqueSuite)                       \
    SUITE(ArrayBurasagariType, 1, OpaqueSuite)                  \
    SUITE(ArrayPreferredKinsokuOrder, 1, OpaqueSuite)           \
    SUITE(ArrayKinsokuRef, 1, OpaqueSuite)                      \
    SUITE(ArrayMojiKumiRef, 1, OpaqueSuite)                     \
    SUITE(ArrayMojiKumiSetRef, 1, OpaqueSuite)                  \
    SUITE(ArrayTabStopsRef, 1, OpaqueSuite)                     \
    SUITE(ArrayLeadingType, 1, OpaqueSuite)                     \
    SUITE(ArrayFontRef, 1, OpaqueSuite)                         \
    SUITE(ArrayGlyphID, 1, OpaqueSuite)                         \
    SUITE(ArrayRealPoint, 1, OpaqueSuite)                       \
    SUITE(ArrayRealMatrix, 1, OpaqueSuite)                      \
    SUITE(ArrayParagraphDirection, 1, OpaqueSuite)              \
    SUITE(ArrayJustificationMethod, 1, OpaqueSuite)             \
    SUITE(ArrayKashidaWidth, 1, OpaqueSuite)                    \
    SUITE(ArrayKashidas, 1, OpaqueSuite)                        \
    SUITE(ArrayDirOverride, 1, OpaqueSuite)                     \
    SUITE(ArrayDigitSet, 1, OpaqueSuite)                        \
    SUITE(ArrayDiacVPos, 1, OpaqueSuite)                        \
    SUITE(CharFeatures, 101, ATE::CharFeaturesSuite)            \
    SUITE(CharInspector, 101, OpaqueSuite)                      \
    SUITE(CharStyle, 1, OpaqueSuite)                            \
    SUITE(CharStyles, 1, OpaqueSuite)                           \
    SUITE(CharStylesIterator, 1, OpaqueSuite)                   \
    SUITE(Find, 101, OpaqueSuite)                               \
    SUITE(Font, 1, ATE::FontSuite)                              \
    SUITE(Glyph, 1, OpaqueSuite)                                \
    SUITE(Glyphs, 1, OpaqueSuite)                               \
    SUITE(GlyphsIterator, 1, OpaqueSuite)                       \
    SUITE(Kinsoku, 1, OpaqueSuite)                              \
    SUITE(KinsokuSet, 1, OpaqueSuite)                           \
    SUITE(ParaFeatures, 101, OpaqueSuite)                       \
    SUITE(Paragraph, 1, OpaqueSuite)                            \
    SUITE(ParagraphsIterator, 1, OpaqueSuite)                   \
    SUITE(ParaInspector, 101, OpaqueSuite)                      \
    SUITE(ParaStyle, 1, OpaqueSuite)                            \
    SUITE(ParaStyles, 1, OpaqueSuite)                           \
    SUITE(ParaStylesIterator, 1, OpaqueSuite)                   \
    SUITE(Spell, 101, OpaqueSuite)                              \
    SUITE(Stories, 1, OpaqueSuite)                              \
    SUITE(Story, 1, OpaqueSuite)                                \
    SUITE(TabStop, 1, OpaqueSuite)                              \
    SUITE(TabStops, 1, OpaqueSuite)                             \
    SUITE(TabStopsIterator, 1, OpaqueSuite)                     \
    SUITE(TextRange, 1, ATE::TextRangeSuite)                    \
    SUITE(TextRanges, 1, OpaqueSuite)                           \
    SUITE(TextRangesIterator, 1, OpaqueSuite)                   \
    SUITE(TextRunsIterator, 1, ATE::TextRunsIteratorSuite)      \
    SUITE(WordsIterator, 1, OpaqueSuite)                        \
    SUITE(ArrayLine, 1, OpaqueSuite)                            \
    SUITE(ArrayComposerEngine, 1, OpaqueSuite)
// clang-format on

// The host's own suites that are held, behind the text engine's: name, version, type, variable.
// clang-format off
#define QUORVEL_HOST_SUITES(SUITE)                                                          \
    SUITE("AI File Path Suite", 5, AIFilePathSuite, sFilePathSuite)                         \
    SUITE("AI User Suite", 12, OpaqueSuite, sUserSuite)                                     \
    SUITE("AI Font Suite", 6, AIFontSuite, sFontSuite)                                      \
    SUITE("AI Notifier Suite", 4, AINotifierSuite, sNotifierSuite)                          \
    SUITE("AI Matching Art Suite", 7, AIMatchingArtSuite, sMatchingArt)                     \
    SUITE("AI Placed Suite", 9, AIPlacedSuite, sPlacedSuite)                                \
    SUITE("AI Text Frame Suite", 4, AITextFrameSuite, sTextFrameSuite)                      \
    SUITE("SP Blocks Suite", 2, SPBlocksSuite, sBlocksSuite)                                \
    SUITE("AI MdMemory Suite", 3, AIMdMemorySuite, sMdMemorySuite)                          \
    SUITE("AI Unicode String Suite", 8, AIUnicodeStringSuite, sUnicodeStringSuite)          \
    SUITE("AI Document Suite", 16, AIDocumentSuite, sDocumentSuite)
// clang-format on

// In a namespace of their own: "sFontSuite" names the host's suite, ATE::sFontSuite the text engine's.
namespace ATE {
#define QUORVEL_DECLARE_SUITE(word, version, type) extern HeldSuite<type> s##word##Suite;
QUORVEL_TEXT_ENGINE_SUITES(QUORVEL_DECLARE_SUITE)
#undef QUORVEL_DECLARE_SUITE
}  // namespace ATE

// The name of a variable takes no parentheses. NOLINTNEXTLINE(bugprone-macro-parentheses)
#define QUORVEL_DECLARE_SUITE(name, version, type, variable) extern HeldSuite<type> variable;
QUORVEL_HOST_SUITES(QUORVEL_DECLARE_SUITE)
#undef QUORVEL_DECLARE_SUITE
