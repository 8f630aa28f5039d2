// Chance that can be repeated: the same seed gives the same throws, with every library.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <iterator>
#include <random>

namespace simhost {

class Dice {
  public:
    explicit Dice(std::uint64_t seed) : mRandom(seed) {}

    // Written out here, for the standard's own distributions differ between libraries. Throw once in a statement: the
    // order within one is the compiler's.
    std::uint64_t Below(std::uint64_t end) { return mRandom() % end; }
    bool Chance(std::uint64_t percent) { return Below(100) < percent; }
    template <class List>
    auto& OneOf(List& list) {
        return list[Below(std::size(list))];
    }

  private:
    std::mt19937_64 mRandom;
};

}  // namespace simhost
