// What belongs to the host's thread and process, and what an entry must leave as it found it.
//
// Thread: main.
#pragma once

#include <cstdint>
#include <string>

namespace simhost::contract {

struct CallerState {
    std::wstring currentFolder;
    std::uint32_t floatingPointControl;  // rounding, exception masks, flush to zero: not what was computed
    std::uint32_t errorMode;             // which failures Windows shows in a box of its own

    static CallerState Now();
};

}  // namespace simhost::contract
