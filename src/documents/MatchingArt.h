#pragma once

#include <cstdint>

#include "host/HostTypes.h"

// All art of one type in the current document: a handle of the host to an array, given back at the end of its life.
// Thread: main.
class MatchingArt {
  public:
    // Asks the host; Status() is its answer.
    explicit MatchingArt(std::int16_t artType);
    MatchingArt(const MatchingArt&) = delete;
    MatchingArt& operator=(const MatchingArt&) = delete;
    ~MatchingArt();

    AIErr Status() const noexcept { return mStatus; }
    // The host gives no handle when it has nothing to say, and may give one to an empty array.
    bool HasHandle() const noexcept { return mMatches != nullptr; }
    std::int32_t Count() const noexcept { return mCount; }
    // The array; only with a handle.
    // Lifetime: of this object.
    AIArtHandle* Art() const noexcept { return *mMatches; }

  private:
    AIArtHandle** mMatches = nullptr;
    std::int32_t mCount = 0;
    AIErr mStatus = 0;
};
