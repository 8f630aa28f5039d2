#pragma once

#include "host/HostTypes.h"

constexpr std::int16_t kPlacedArt = 7;
constexpr std::int16_t kTextFrameArt = 12;

struct AIMatchingArtSpec {
    std::int16_t type;
    std::int32_t whichAttr;
    std::int32_t attr;
};

// Thread: main.
struct AIMatchingArtSuite {
    void* unused0[1];  // 0
    // The art of the current document that matches one of `specs`. *matches is a handle (a pointer to the pointer to
    // the array) that the caller gives back with MdMemoryDisposeHandle; the art in it stays the host's.
    AIErr (*GetMatchingArt)(AIMatchingArtSpec* specs, std::int16_t numSpecs, AIArtHandle*** matches,
                            std::int32_t* numMatches);  // 1
    void* unused2[6];                                   // 2 to 7
};
