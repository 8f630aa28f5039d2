// What an entry of a double does when it is called.
//
// Thread: any.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace doubles {

enum class Throw {
    kNothing,
    kForeignException,
    kCppException,
    kAccessViolation,  // no exception of C++: nobody in the process is meant to stop it
};

struct Answer {
    std::int32_t result = 0;
    // Instead of returning.
    Throw throws = Throw::kNothing;
    // For the caller's buffer: these bytes and a zero behind them, as far as they fit. Nothing is written without it.
    std::optional<std::string> text;
    // Nothing is written of a text that does not fit with its zero.
    bool isWholeTextOnly = false;
    // The text over and over, up to the last byte of the buffer and without a zero.
    bool isRepeated = false;
    // What becomes of the caller's size, whatever was written. Untouched without it.
    std::optional<std::uint64_t> size;
    // What PluginIsEnabled and GetSocketPort fill in.
    std::uint8_t enabled = 1;
    std::uint32_t port = 0;
    // Whether CreateMenusFromJSONBuffer calls back for each item of the description.
    bool createsItems = true;
    // Runs inside the entry, once the call is recorded and before its answer is chosen. Only code can set it.
    std::function<void()> during;
};

}  // namespace doubles
