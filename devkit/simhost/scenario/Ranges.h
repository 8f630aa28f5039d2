// The ranges of numbers in a scenario: a number that does not fit is refused, never cut.
#pragma once

#include <cstdint>
#include <limits>

namespace simhost {

struct Range {
    std::int64_t least;
    std::int64_t most;
};

namespace ranges {

// Answers and result codes of all sides, options.
inline constexpr Range kInt32{std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()};
// Styles of message boxes, ports: the PluginCore's port fills 32 bits.
inline constexpr Range kUint32{0, std::numeric_limits<std::uint32_t>::max()};
inline constexpr Range kByte{0, 255};
// What the PluginCore leaves in a 64-bit size.
inline constexpr Range kSize{0, std::numeric_limits<std::int64_t>::max()};
// "The n-th call", and how often something happens.
inline constexpr Range kNth{1, 1'000'000};
inline constexpr Range kCount{0, 1'000'000};
// A time limit, and the time that passes for the plug-in: a day and some thirty years.
inline constexpr Range kTimeLimit{1, 86'400};
inline constexpr Range kSeconds{0, 1'000'000'000};

}  // namespace ranges

}  // namespace simhost
