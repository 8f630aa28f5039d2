// Windows counts time in steps of 100 ns since 1601; the plug-in in seconds since 1970-01-01 00:00 UTC.
// Thread: any.
#pragma once

#include <windows.h>

#include <cstdint>

inline std::int64_t SecondsSince1970(const FILETIME& time) {
    constexpr std::int64_t kTicksFrom1601To1970 = 116444736000000000;
    constexpr std::int64_t kTicksPerSecond = 10000000;
    const auto ticks =
        static_cast<std::int64_t>((static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime);
    return (ticks - kTicksFrom1601To1970) / kTicksPerSecond;
}
