// Which art the document has, and what its text frames and placed objects are.
#include <vector>

#include "bench/host/CountingSuites.h"
#include "bench/host/HostCalls.h"

namespace bench {

namespace {

// The array that a handle of the host points to, made anew for another document.
template <class Part>
class ArtArray {
  public:
    AIArtHandle** HandleTo(std::vector<Part>& parts) {
        if (mOf != &parts) {
            mOf = &parts;
            mArt.clear();
            for (Part& part : parts) {
                mArt.push_back(reinterpret_cast<AIArtHandle>(&part));
            }
        }
        mBegin = mArt.data();
        return parts.empty() ? nullptr : &mBegin;
    }

  private:
    const std::vector<Part>* mOf = nullptr;
    std::vector<AIArtHandle> mArt;
    AIArtHandle* mBegin = nullptr;
};

ArtArray<HostFrame> textFrames;
ArtArray<std::u16string> placedArt;

AIErr GetMatchingArt(AIMatchingArtSpec* specs, std::int16_t, AIArtHandle*** matches, std::int32_t* numMatches) {
    ++hostCalls;
    HostDocument& document = *shownDocument;
    if (specs->type == kTextFrameArt) {
        *matches = textFrames.HandleTo(document.frames);
        *numMatches = static_cast<std::int32_t>(document.frames.size());
    } else {
        *matches = placedArt.HandleTo(document.placedFiles);
        *numMatches = static_cast<std::int32_t>(document.placedFiles.size());
    }
    return 0;
}

AIErr DisposeHandle(AIMdMemoryHandle) {
    ++hostCalls;
    return 0;
}

AIErr GetATETextRange(AIArtHandle art, ATE::TextRangeRef* range) {
    ++hostCalls;
    *range = reinterpret_cast<ATE::TextRangeRef>(art);
    return 0;
}

// A host string is the text that it holds.
AIErr GetPlacedFilePathFromArt(AIArtHandle art, ai::UnicodeStringData& path) {
    ++hostCalls;
    path.impl = art;
    return 0;
}

AIMatchingArtSuite MakeMatchingArtSuite() {
    AIMatchingArtSuite suite{};
    suite.GetMatchingArt = GetMatchingArt;
    return suite;
}

AIMdMemorySuite MakeMdMemorySuite() {
    AIMdMemorySuite suite{};
    suite.MdMemoryDisposeHandle = DisposeHandle;
    return suite;
}

AITextFrameSuite MakeTextFrameSuite() {
    AITextFrameSuite suite{};
    suite.GetATETextRange = GetATETextRange;
    return suite;
}

AIPlacedSuite MakePlacedSuite() {
    AIPlacedSuite suite{};
    suite.GetPlacedFilePathFromArt = GetPlacedFilePathFromArt;
    return suite;
}

}  // namespace

const AIMatchingArtSuite matchingArtSuite = MakeMatchingArtSuite();
const AIMdMemorySuite mdMemorySuite = MakeMdMemorySuite();
const AITextFrameSuite textFrameSuite = MakeTextFrameSuite();
const AIPlacedSuite placedSuite = MakePlacedSuite();

}  // namespace bench
