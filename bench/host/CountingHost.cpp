#include "bench/host/CountingHost.h"

#include "bench/host/CountingSuites.h"
#include "host/HeldSuites.h"

namespace bench {

namespace {

HostDocument noDocument;

}  // namespace

HostDocument* shownDocument = &noDocument;

void ShowDocument(HostDocument& document) { shownDocument = &document; }

void HoldSuites() {
    *sDocumentSuite.Target() = &documentSuite;
    *sFilePathSuite.Target() = &filePathSuite;
    *sUnicodeStringSuite.Target() = &unicodeStringSuite;
    *sMatchingArt.Target() = &matchingArtSuite;
    *sMdMemorySuite.Target() = &mdMemorySuite;
    *sTextFrameSuite.Target() = &textFrameSuite;
    *sPlacedSuite.Target() = &placedSuite;
    *sFontSuite.Target() = &fontSuite;
    *ATE::sTextRangeSuite.Target() = &textRangeSuite;
    *ATE::sTextRunsIteratorSuite.Target() = &textRunsIteratorSuite;
    *ATE::sCharFeaturesSuite.Target() = &charFeaturesSuite;
    *ATE::sFontSuite.Target() = &textEngineFontSuite;
}

}  // namespace bench
