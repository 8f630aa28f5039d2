#include "host/HeldSuites.h"

void ThrowSuiteNotHeld() { throw SuiteNotHeld(); }

namespace ATE {
#define QUORVEL_DEFINE_SUITE(word, version, type) HeldSuite<type> s##word##Suite;
QUORVEL_TEXT_ENGINE_SUITES(QUORVEL_DEFINE_SUITE)
#undef QUORVEL_DEFINE_SUITE
}  // namespace ATE

HeldSuite<AIFilePathSuite> sFilePathSuite;
HeldSuite<OpaqueSuite> sUserSuite;
HeldSuite<AIFontSuite> sFontSuite;
HeldSuite<AINotifierSuite> sNotifierSuite;
HeldSuite<AIMatchingArtSuite> sMatchingArt;
HeldSuite<AIPlacedSuite> sPlacedSuite;
HeldSuite<AITextFrameSuite> sTextFrameSuite;
HeldSuite<SPBlocksSuite> sBlocksSuite;
HeldSuite<AIMdMemorySuite> sMdMemorySuite;
HeldSuite<AIUnicodeStringSuite> sUnicodeStringSuite;
HeldSuite<AIDocumentSuite> sDocumentSuite;
