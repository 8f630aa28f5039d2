// The runs of a text frame, their fonts, and the names of fonts.
#include <cstring>

#include "bench/host/CountingSuites.h"
#include "bench/host/HostCalls.h"

namespace bench {

namespace {

// A reference is the address of what it stands for. The plug-in goes through one frame at a time.
struct RunsIterator {
    HostRun* next;
    HostRun* end;
};
RunsIterator iterator{};

template <class Ref>
void CountReference(Ref) {
    ++hostCalls;
}

template <class Ref>
ATEBool8 IsNull(Ref ref) {
    ++hostCalls;
    return ref == nullptr ? 1 : 0;
}

ATEErr GetTextRunsIterator(ATE::TextRangeRef range, ATE::TextRunsIteratorRef* runs) {
    ++hostCalls;
    HostFrame& frame = *reinterpret_cast<HostFrame*>(range);
    iterator = {frame.runs.data(), frame.runs.data() + frame.runs.size()};
    *runs = reinterpret_cast<ATE::TextRunsIteratorRef>(&iterator);
    return 0;
}

ATEErr IsNotDone(ATE::TextRunsIteratorRef, ATEBool8* notDone) {
    ++hostCalls;
    *notDone = iterator.next != iterator.end ? 1 : 0;
    return 0;
}

ATEErr Item(ATE::TextRunsIteratorRef, ATE::TextRangeRef* run) {
    ++hostCalls;
    *run = reinterpret_cast<ATE::TextRangeRef>(iterator.next);
    return 0;
}

ATEErr Next(ATE::TextRunsIteratorRef) {
    ++hostCalls;
    ++iterator.next;
    return 0;
}

ATEErr GetUniqueCharFeatures(ATE::TextRangeRef run, ATE::CharFeaturesRef* features) {
    ++hostCalls;
    *features = reinterpret_cast<ATE::CharFeaturesRef>(run);
    return 0;
}

ATEErr GetFont(ATE::CharFeaturesRef features, ATEBool8* isAssigned, ATE::FontRef* font) {
    ++hostCalls;
    *isAssigned = 1;
    *font = reinterpret_cast<ATE::FontRef>(reinterpret_cast<HostRun*>(features)->font);
    return 0;
}

AIErr FontKeyFromFont(ATE::FontRef font, AIFontKey* key) {
    ++hostCalls;
    *key = reinterpret_cast<AIFontKey>(font);
    return 0;
}

// A script that has no default font is refused, and the key stays what it was.
AIErr GetDefaultFont(std::int32_t script, AIFontKey* key) {
    ++hostCalls;
    HostFont* const font = shownDocument->defaultFonts[static_cast<std::size_t>(script - kFirstScript)];
    if (font == nullptr) {
        return 1;
    }
    *key = reinterpret_cast<AIFontKey>(font);
    return 0;
}

// All names fit.
AIErr GetPostScriptFontName(AIFontKey key, char* name, std::int16_t) {
    ++hostCalls;
    if (key == nullptr) {
        return 1;
    }
    const std::string& text = reinterpret_cast<const HostFont*>(key)->name;
    std::memcpy(name, text.c_str(), text.size() + 1);
    return 0;
}

template <class Suite, class Ref>
Suite MakeCountingSuite() {
    Suite suite{};
    suite.AddRef = CountReference<Ref>;
    suite.Release = CountReference<Ref>;
    suite.IsNull = IsNull<Ref>;
    return suite;
}

ATE::TextRangeSuite MakeTextRangeSuite() {
    auto suite = MakeCountingSuite<ATE::TextRangeSuite, ATE::TextRangeRef>();
    suite.GetTextRunsIterator = GetTextRunsIterator;
    suite.GetUniqueCharFeatures = GetUniqueCharFeatures;
    return suite;
}

ATE::TextRunsIteratorSuite MakeTextRunsIteratorSuite() {
    auto suite = MakeCountingSuite<ATE::TextRunsIteratorSuite, ATE::TextRunsIteratorRef>();
    suite.IsNotDone = IsNotDone;
    suite.Next = Next;
    suite.Item = Item;
    return suite;
}

ATE::CharFeaturesSuite MakeCharFeaturesSuite() {
    auto suite = MakeCountingSuite<ATE::CharFeaturesSuite, ATE::CharFeaturesRef>();
    suite.GetFont = GetFont;
    return suite;
}

AIFontSuite MakeFontSuite() {
    AIFontSuite suite{};
    suite.GetDefaultFont = GetDefaultFont;
    suite.GetPostScriptFontName = GetPostScriptFontName;
    suite.FontKeyFromFont = FontKeyFromFont;
    return suite;
}

}  // namespace

const ATE::TextRangeSuite textRangeSuite = MakeTextRangeSuite();
const ATE::TextRunsIteratorSuite textRunsIteratorSuite = MakeTextRunsIteratorSuite();
const ATE::CharFeaturesSuite charFeaturesSuite = MakeCharFeaturesSuite();
const ATE::FontSuite textEngineFontSuite = MakeCountingSuite<ATE::FontSuite, ATE::FontRef>();
const AIFontSuite fontSuite = MakeFontSuite();

}  // namespace bench
