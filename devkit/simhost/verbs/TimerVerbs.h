// tick, wait: time passes.
#pragma once

#include <cstdint>

#include "simhost/scenario/ObjectReader.h"

namespace simhost {

class Performance;

// Every active timer ticks so many times.
struct Tick {
    std::int64_t times = 1;
    std::int64_t sent = 1;  // how many messages that makes
};
Tick ReadTick(ObjectReader& reader);
void Perform(const Tick& action, Performance& performance);

struct Wait {
    std::int64_t seconds;
};
void Perform(const Wait& action, Performance& performance);

}  // namespace simhost
