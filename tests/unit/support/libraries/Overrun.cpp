// Functions that write as much as they are told to into a buffer of 16 bytes. Built with the plug-in's flags, and
// without.
#include <cstddef>
#include <cstdint>
#include <cstring>

// The compiler's name: what guarded functions keep behind their buffers.
extern "C" std::uintptr_t __stack_chk_guard;

namespace {

// Not known to the compiler.
volatile unsigned char sFill = 'A';
char sSource[256];

}  // namespace

// Byte by byte: only the stack protector sees it.
extern "C" __declspec(dllexport) int Fill(std::size_t length) {
    volatile unsigned char buffer[16] = {};
    volatile unsigned char* next = buffer;
    for (std::size_t i = 0; i < length; ++i) {
        *next++ = sFill;
    }
    return buffer[0] == sFill ? 0 : 1;
}

// By a call of the C library, which can be checked before it writes.
extern "C" __declspec(dllexport) int Copy(std::size_t length) {
    char buffer[16] = {};
    std::memcpy(buffer, sSource, length);
    return buffer[length % sizeof buffer] == 0 ? 0 : 1;
}

// Its lower half.
extern "C" __declspec(dllexport) int Guard(std::size_t) { return static_cast<int>(__stack_chk_guard); }
