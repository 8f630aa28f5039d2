#include "documents/MatchingArt.h"

#include "host/HeldSuites.h"
#include "host/MatchingArtSuite.h"
#include "host/MdMemorySuite.h"

MatchingArt::MatchingArt(std::int16_t artType) {
    AIMatchingArtSpec spec{artType, 0, 0};
    mStatus = sMatchingArt->GetMatchingArt(&spec, 1, &mMatches, &mCount);
    if (mStatus != 0) {
        // Whatever a failing host has written there is no handle to give back.
        mMatches = nullptr;
    }
}

MatchingArt::~MatchingArt() {
    // Nothing can be done about a handle that the host does not take back.
    if (mMatches != nullptr && sMdMemorySuite) {
        sMdMemorySuite->MdMemoryDisposeHandle(reinterpret_cast<AIMdMemoryHandle>(mMatches));
    }
}
