// Functions for the suite slots that the plug-in must not call. Each reports its call.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <vector>

namespace simhost {

// Called by a trap. What it returns becomes the result of the slot.
using TrapHandler = std::int64_t (*)(std::uint32_t suite, std::uint32_t slot);

// One function for each slot of the suite with that number. They stay valid until the process ends.
std::vector<void*> MakeTraps(std::uint32_t suite, int slots, TrapHandler handler);

}  // namespace simhost
