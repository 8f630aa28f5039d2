#include "host/TextEngine.h"

#include "host/HeldSuites.h"
#include "host/TextEngineSuites.h"

namespace ATE {

namespace {

void ThrowOnFailure(ATEErr code) {
    if (code != 0) {
        throw Exception(code);
    }
}

// A reference can only be given back while its suite is held; without the suite the text engine itself is gone.
template <class Suite, class Ref>
void ReleaseIfHeld(const HeldSuite<Suite>& suite, Ref ref) noexcept {
    if (suite) {
        suite->Release(ref);
    }
}

}  // namespace

void FontCounting::AddRef(FontRef font) { sFontSuite->AddRef(font); }
void FontCounting::Release(FontRef font) noexcept { ReleaseIfHeld(sFontSuite, font); }
bool FontCounting::IsNull(FontRef font) { return sFontSuite->IsNull(font) != 0; }

void CharFeaturesCounting::AddRef(CharFeaturesRef features) { sCharFeaturesSuite->AddRef(features); }
void CharFeaturesCounting::Release(CharFeaturesRef features) noexcept { ReleaseIfHeld(sCharFeaturesSuite, features); }
bool CharFeaturesCounting::IsNull(CharFeaturesRef features) { return sCharFeaturesSuite->IsNull(features) != 0; }

void TextRangeCounting::AddRef(TextRangeRef range) { sTextRangeSuite->AddRef(range); }
void TextRangeCounting::Release(TextRangeRef range) noexcept { ReleaseIfHeld(sTextRangeSuite, range); }
bool TextRangeCounting::IsNull(TextRangeRef range) { return sTextRangeSuite->IsNull(range) != 0; }

void TextRunsIteratorCounting::AddRef(TextRunsIteratorRef iterator) { sTextRunsIteratorSuite->AddRef(iterator); }
void TextRunsIteratorCounting::Release(TextRunsIteratorRef iterator) noexcept {
    ReleaseIfHeld(sTextRunsIteratorSuite, iterator);
}
bool TextRunsIteratorCounting::IsNull(TextRunsIteratorRef iterator) {
    return sTextRunsIteratorSuite->IsNull(iterator) != 0;
}

IFont ICharFeatures::GetFont(bool* isAssigned) const {
    ATEBool8 assigned = 0;
    FontRef font = nullptr;
    ThrowOnFailure(sCharFeaturesSuite->GetFont(GetRef(), &assigned, &font));
    *isAssigned = assigned != 0;
    return IFont(font);
}

ITextRunsIterator ITextRange::GetTextRunsIterator() const {
    TextRunsIteratorRef iterator = nullptr;
    ThrowOnFailure(sTextRangeSuite->GetTextRunsIterator(GetRef(), &iterator));
    return ITextRunsIterator(iterator);
}

ICharFeatures ITextRange::GetUniqueCharFeatures() const {
    CharFeaturesRef features = nullptr;
    ThrowOnFailure(sTextRangeSuite->GetUniqueCharFeatures(GetRef(), &features));
    return ICharFeatures(features);
}

bool ITextRunsIterator::IsNotDone() const {
    ATEBool8 notDone = 0;
    ThrowOnFailure(sTextRunsIteratorSuite->IsNotDone(GetRef(), &notDone));
    return notDone != 0;
}

void ITextRunsIterator::Next() { ThrowOnFailure(sTextRunsIteratorSuite->Next(GetRef())); }

ITextRange ITextRunsIterator::Item() const {
    TextRangeRef run = nullptr;
    ThrowOnFailure(sTextRunsIteratorSuite->Item(GetRef(), &run));
    return ITextRange(run);
}

}  // namespace ATE
