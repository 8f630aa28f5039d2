// Messages in random orders, with nulls, unknown callers and wrong handles, some inside others, while operations of the
// host fail and texts are no texts. What the plug-in answers must make sense all the same: a message by itself is never
// refused as if another were being handled, and a nested one always.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "doubles/host/HostOperations.h"

namespace simhost {

class Performance;

class RandomMessages {
  public:
    struct Counts {
        std::int64_t nested = 0;
        std::int64_t failures = 0;
        std::int64_t strange = 0;
    };

    // The same seed gives the same messages.
    RandomMessages(std::uint64_t seed, Performance& performance);
    RandomMessages(const RandomMessages&) = delete;
    RandomMessages& operator=(const RandomMessages&) = delete;
    ~RandomMessages();

    // Throws HostLost.
    void SendOne();
    const Counts& Sent() const { return mCounts; }

  private:
    std::uint64_t Below(std::uint64_t end) { return mRandom() % end; }
    bool Chance(std::uint64_t percent) { return Below(100) < percent; }
    template <class List>
    auto& OneOf(List& list) {
        return list[Below(std::size(list))];
    }

    void ChangeHost();
    std::vector<ScriptedEvent> SomeEvents();
    void SendNested();

    // Each answers what the plug-in answers.
    std::int32_t Send();
    std::int32_t SendLifeCycle();
    std::int32_t SendMenu();
    std::int32_t SendNotification();
    std::int32_t SendFileCheck();
    std::int32_t SendStrange();

    void* Handle(const std::vector<void*>& right);

    std::mt19937_64 mRandom;
    Performance& mPerformance;
    Counts mCounts;
    std::int64_t mNumber = 0;  // of the message, from 1
    bool mMayAnswer1 = false;  // the message under way
};

}  // namespace simhost
