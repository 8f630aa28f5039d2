// What GCC's stack protector needs of a module: the value that guarded functions keep behind their buffers, and what
// happens when it was overwritten. GCC's own library makes the value with the cryptographic service, which loads
// libraries: a module that is being loaded itself must not do that.
//
// Thread: any; the value is set before any other code of the module runs.
#include <windows.h>

#include <cstdint>

// The names are the compiler's own.
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreserved-identifier"
#pragma clang diagnostic ignored "-Wmissing-variable-declarations"
#endif

// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
std::uintptr_t __stack_chk_guard = 0;
// A guarded function's buffer was overrun.
void __stack_chk_fail() __attribute__((noreturn));
// A checked call of the C library would overrun its buffer.
void __chk_fail() __attribute__((noreturn));
}
// NOLINTEND(bugprone-reserved-identifier)

namespace {

// Windows' own codes of a fast failure.
constexpr unsigned kStackCookieCheckFailure = 2;
constexpr unsigned kRangeCheckFailure = 8;

// Ends the process at once. Nothing of the module runs any more, no handler either: whoever overran the buffer may have
// overwritten what a handler would use.
[[noreturn]] void FailFast(unsigned code) {
    __asm__ volatile("int $0x29" : : "c"(code));
    __builtin_unreachable();
}

// As Visual C++ makes its value: from what an attacker cannot foresee together. The two upper bytes are zero, so that
// no text that overruns a buffer can restore the value.
__attribute__((constructor(101), no_stack_protector)) void MakeGuard() {
    FILETIME time;
    LARGE_INTEGER ticks;
    GetSystemTimeAsFileTime(&time);
    QueryPerformanceCounter(&ticks);
    const std::uint64_t sources[] = {
        (std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime,
        static_cast<std::uint64_t>(ticks.QuadPart),
        (std::uint64_t{GetCurrentProcessId()} << 32) | GetCurrentThreadId(),
        reinterpret_cast<std::uintptr_t>(&time),
        reinterpret_cast<std::uintptr_t>(&__stack_chk_guard),
    };
    constexpr std::uint64_t kSpread = 0x9E3779B97F4A7C15;  // odd: every bit of a source reaches the upper bits
    std::uint64_t guard = 0;
    for (const std::uint64_t source : sources) {
        guard = (guard ^ source) * kSpread;
        guard ^= guard >> 29;
    }
    guard >>= 16;
    __stack_chk_guard = guard != 0 ? guard : kSpread >> 16;
}

}  // namespace

void __stack_chk_fail() { FailFast(kStackCookieCheckFailure); }

void __chk_fail() { FailFast(kRangeCheckFailure); }

#if defined(__clang__)
#pragma clang diagnostic pop
#endif
