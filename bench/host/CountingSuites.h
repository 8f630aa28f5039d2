// The suites of the counting host, for those who call them without the plug-in.
// Lifetime: of the program.
// Thread: main.
#pragma once

#include "bench/host/HostDocument.h"
#include "host/ArtSuites.h"
#include "host/DocumentSuite.h"
#include "host/FontSuite.h"
#include "host/MatchingArtSuite.h"
#include "host/MdMemorySuite.h"
#include "host/StringSuites.h"
#include "host/TextEngineSuites.h"

namespace bench {

extern const AIDocumentSuite documentSuite;
extern const AIFilePathSuite filePathSuite;
extern const AIUnicodeStringSuite unicodeStringSuite;
extern const AIMatchingArtSuite matchingArtSuite;
extern const AIMdMemorySuite mdMemorySuite;
extern const AITextFrameSuite textFrameSuite;
extern const AIPlacedSuite placedSuite;
extern const AIFontSuite fontSuite;
extern const ATE::TextRangeSuite textRangeSuite;
extern const ATE::TextRunsIteratorSuite textRunsIteratorSuite;
extern const ATE::CharFeaturesSuite charFeaturesSuite;
extern const ATE::FontSuite textEngineFontSuite;

// The document that their operations answer about.
extern HostDocument* shownDocument;

}  // namespace bench
