// The developer kit's one place for what a single compiler understands.
#pragma once

#include <cstdint>

#ifdef _MSC_VER
#include <intrin.h>
#endif

// Where the function in which it stands was called from. A function instead of it would tell about itself.
#ifdef _MSC_VER
#define QUORVEL_CALLER_ADDRESS _ReturnAddress()
#else
#define QUORVEL_CALLER_ADDRESS __builtin_return_address(0)
#endif

// For sources that make types of the declarations of Windows: GCC tells that the attributes of these are left behind.
#if defined(__GNUC__) && !defined(__clang__)
#define QUORVEL_TYPES_LEAVE_ATTRIBUTES_BEHIND _Pragma("GCC diagnostic ignored \"-Wignored-attributes\"")
#else
#define QUORVEL_TYPES_LEAVE_ATTRIBUTES_BEHIND
#endif

// The control word of the older floating-point unit, which GCC's long double uses. For Visual C++ nothing reaches it on
// 64-bit Windows: there it is always 0, and stays what it is.
inline std::uint16_t X87ControlWord() {
    std::uint16_t word = 0;
#ifdef __GNUC__
    __asm__ volatile("fnstcw %0" : "=m"(word));
#endif
    return word;
}

inline void SetX87ControlWord([[maybe_unused]] std::uint16_t word) {
#ifdef __GNUC__
    __asm__ volatile("fldcw %0" : : "m"(word));
#endif
}

// As a process begins.
inline void ResetX87() {
#ifdef __GNUC__
    __asm__ volatile("fninit");
#endif
}

// Gives the process up at once, past all handlers, with a code of Windows' own. Whoever looks for the culprit finds the
// line where it stands, and not one of this file.
#ifdef _MSC_VER
#define QUORVEL_FAIL_FAST(code) __fastfail(code)
#else
#define QUORVEL_FAIL_FAST(code) __asm__ volatile("int $0x29" : : "c"(code))
#endif
