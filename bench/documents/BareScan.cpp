#include "bench/documents/BareScan.h"

#include <cstdint>

#include "bench/documents/BoundedFormat.h"
#include "bench/host/CountingSuites.h"

namespace bench {

namespace {

constexpr std::int32_t kScripts[] = {-2, -1, 0,  1,  2,  3,  4,  5,  6,  7,  9,  10,
                                     11, 12, 13, 14, 15, 16, 17, 25, 29, 32, 81, 85};
// As long as the paths are.
constexpr const char* kPlacedPath = "C:\\Users\\designer\\Documents\\Catalogue\\links\\picture 0.psd";
constexpr std::int32_t kFailed = 0x15000000;

// With `kLines` false only the calls are left.
template <bool kLines>
struct BareScan {
    template <class... Arguments>
    static void Line(const char* format, Arguments... arguments) {
        if constexpr (kLines) {
            FormatLine(format, arguments...);
        }
    }

    // The font's own address tells whether it is new: as cheap as it can be.
    static bool IsNew(const HostFont* font) { return font >= sFirstUnknown; }

    static void Run(ATE::TextRangeRef run) {
        ATE::CharFeaturesRef features = nullptr;
        textRangeSuite.GetUniqueCharFeatures(run, &features);
        ATEBool8 isAssigned = 0;
        ATE::FontRef font = nullptr;
        charFeaturesSuite.GetFont(features, &isAssigned, &font);
        charFeaturesSuite.Release(features);
        AIFontKey key = nullptr;
        fontSuite.FontKeyFromFont(font, &key);
        char name[256];
        fontSuite.GetPostScriptFontName(key, name, sizeof name);
        textEngineFontSuite.Release(font);
        Line("%s(..., '%s') returning %d", "GetTextRunFaceStyle", name, 0);
        textRangeSuite.Release(run);
        BareDefaultFontCalls();
        const auto* const hostFont = reinterpret_cast<const HostFont*>(key);
        const bool isNew = IsNew(hostFont);
        Line("Entering %s('%s')", "CrossPluginUtils::CreateFontDataForOneFont", name);
        Line("Exiting %s()", "CrossPluginUtils::CreateFontDataForOneFont");
        Line("Entering %s()", "CrossPluginUtils::AddFontToArray");
        Line("%s() returning %d", "CrossPluginUtils::AddFontToArray", isNew ? 1 : 0);
        if (isNew) {
            sFirstUnknown = hostFont + 1;
            Line("AddNewFontNameFromTextArt() added '%s'", name);
        } else {
            Line("AddNewFontNameFromTextArt() ignored duplicate font '%s'", name);
        }
    }

    static void Frame(AIArtHandle frame) {
        ATE::TextRangeRef range = nullptr;
        textFrameSuite.GetATETextRange(frame, &range);
        ATE::TextRunsIteratorRef runs = nullptr;
        textRangeSuite.GetTextRunsIterator(range, &runs);
        for (;;) {
            ATEBool8 notDone = 0;
            textRunsIteratorSuite.IsNotDone(runs, &notDone);
            if (notDone == 0) {
                break;
            }
            ATE::TextRangeRef run = nullptr;
            textRunsIteratorSuite.Item(runs, &run);
            Run(run);
            textRunsIteratorSuite.Next(runs);
        }
        textRunsIteratorSuite.Release(runs);
        textRangeSuite.Release(range);
    }

    static AIArtHandle** Match(std::int16_t type, std::int32_t& count) {
        AIMatchingArtSpec spec{type, 0, 0};
        AIArtHandle** matches = nullptr;
        matchingArtSuite.GetMatchingArt(&spec, 1, &matches, &count);
        return matches;
    }

    static void Dispose(AIArtHandle** matches) {
        mdMemorySuite.MdMemoryDisposeHandle(reinterpret_cast<AIMdMemoryHandle>(matches));
    }

    static void TextFrames() {
        sFirstUnknown = shownDocument->fonts.data();
        Line("Entering %s()", "ExamineTextFramesInCurrentDocForFontUsage");
        std::int32_t count = 0;
        AIArtHandle** const matches = Match(kTextFrameArt, count);
        Line("sMatchingArt->GetMatchingArt(spec.type=kTextFrameArt, numSpecs=1, numMatches=%d) returned %d", count,
             kFailed);
        Line("Entering %s", "ExamineTextRangesInThisFrameForFontUsage");
        for (std::int32_t i = 0; i < count; ++i) {
            Frame((*matches)[i]);
        }
        Line("%s returning %d", "ExamineTextRangesInThisFrameForFontUsage", 0);
        Dispose(matches);
        Line("%s() returning %d", "ExamineTextFramesInCurrentDocForFontUsage", 0);
    }

    static void PlacedArt() {
        Line("Entering %s()", "ExamineCurrentDocForPlacedArt");
        std::int32_t count = 0;
        AIArtHandle** const matches = Match(kPlacedArt, count);
        Line("sMatchingArt->GetMatchingArt(spec.type=kPlacedArt, numSpecs=1, numMatches=%d) returned %d", count,
             kFailed);
        for (std::int32_t i = 0; i < count; ++i) {
            ai::UnicodeStringData path{nullptr};
            placedSuite.GetPlacedFilePathFromArt((*matches)[i], path);
            const HostUtf16Unit* units = nullptr;
            Keep(unicodeStringSuite.UTF_16(path, units));
            Line("Placed object found: '%s'", kPlacedPath);
            unicodeStringSuite.Destroy(path);
        }
        Dispose(matches);
        Line("%s() returning %d", "ExamineCurrentDocForPlacedArt", 0);
    }

    static void Document() {
        Line("Entering %s", "CurrentDocumentFontUsage");
        TextFrames();
        PlacedArt();
        Line("Exiting %s", "CurrentDocumentFontUsage");
    }

    static inline const HostFont* sFirstUnknown = nullptr;
};

}  // namespace

void BareScanCalls() { BareScan<false>::Document(); }
void BareScanCallsAndLines() { BareScan<true>::Document(); }

void BareDefaultFontCalls() {
    AIFontKey key = nullptr;
    for (const std::int32_t script : kScripts) {
        fontSuite.GetDefaultFont(script, &key);
        char name[128];
        fontSuite.GetPostScriptFontName(key, name, sizeof name);
        Keep(name);
    }
}

}  // namespace bench
