// random_messages: whatever a host could send in its worst hour, by chance.
#pragma once

#include <cstdint>

#include "simhost/random/MessageCounts.h"
#include "simhost/scenario/ObjectReader.h"

namespace simhost {

class Performance;

struct SendRandomMessages {
    std::int64_t times;
    std::uint64_t seed;  // the same one gives the same messages
    LeastCounts atLeast;
    bool missesToTheEnd;  // suites that are refused at a start-up, also at the shut-down
};
SendRandomMessages ReadRandomMessages(ObjectReader& reader);
void Perform(const SendRandomMessages& action, Performance& performance);

}  // namespace simhost
