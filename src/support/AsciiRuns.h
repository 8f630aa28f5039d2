// ASCII in texts of any encoding, found and copied by blocks of units: the loops over a block have a fixed count, and
// the compiler does a block in a few instructions. Internal to the conversions.
// Thread: any.
#pragma once

#include <algorithm>
#include <cstddef>
#include <type_traits>

constexpr std::size_t kAsciiBlock = 16;

template <class Unit>
bool IsAscii(Unit unit) noexcept {
    return static_cast<std::make_unsigned_t<Unit>>(unit) < 0x80;
}

template <class Unit>
bool BeginsWithAsciiBlock(const Unit* units, const Unit* end) noexcept {
    if (static_cast<std::size_t>(end - units) < kAsciiBlock) {
        return false;
    }
    using Bits = std::make_unsigned_t<Unit>;
    Bits bits = 0;
    for (std::size_t i = 0; i < kAsciiBlock; ++i) {
        bits = static_cast<Bits>(bits | static_cast<Bits>(units[i]));
    }
    return IsAscii(bits);
}

template <class From, class To>
struct Copied {
    const From* from;  // what comes next
    To* out;           // where it goes
};

// Copies the ASCII at the beginning.
template <class From, class To>
Copied<From, To> CopyAscii(const From* from, const From* end, To* out) noexcept {
    for (; BeginsWithAsciiBlock(from, end); from += kAsciiBlock) {
        To block[kAsciiBlock];
        for (std::size_t i = 0; i < kAsciiBlock; ++i) {
            block[i] = static_cast<To>(from[i]);
        }
        out = std::copy_n(block, kAsciiBlock, out);
    }
    for (; from != end && IsAscii(*from); ++from) {
        *out++ = static_cast<To>(*from);
    }
    return {from, out};
}
