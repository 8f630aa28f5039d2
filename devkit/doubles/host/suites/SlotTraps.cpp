#include "doubles/host/suites/SlotTraps.h"

#include <windows.h>

#include <cstring>
#include <stdexcept>

namespace simhost {

namespace {

// A trap is written at run time, because twenty thousand functions that differ in two numbers would make the program
// ten times as large:
//     mov ecx, suite
//     mov edx, slot
//     mov rax, handler
//     jmp rax
constexpr std::size_t kTrapSize = 32;

template <class Value>
unsigned char* Append(unsigned char* to, const Value& value) {
    std::memcpy(to, &value, sizeof value);
    return to + sizeof value;
}

void WriteTrap(unsigned char* to, std::uint32_t suite, std::uint32_t slot, TrapHandler handler) {
    to = Append(to, std::uint8_t{0xB9});
    to = Append(to, suite);
    to = Append(to, std::uint8_t{0xBA});
    to = Append(to, slot);
    to = Append(to, std::uint16_t{0xB848});
    to = Append(to, handler);
    Append(to, std::uint16_t{0xE0FF});
}

}  // namespace

std::vector<void*> MakeTraps(std::uint32_t suite, int slots, TrapHandler handler) {
    const auto count = static_cast<std::size_t>(slots);
    auto* code =
        static_cast<unsigned char*>(VirtualAlloc(nullptr, count * kTrapSize, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE));
    if (code == nullptr) {
        throw std::runtime_error("no memory for the suite tables");
    }
    std::vector<void*> traps;
    for (std::size_t slot = 0; slot < count; ++slot) {
        unsigned char* const trap = code + slot * kTrapSize;
        WriteTrap(trap, suite, static_cast<std::uint32_t>(slot), handler);
        traps.push_back(trap);
    }
    DWORD before = 0;
    VirtualProtect(code, count * kTrapSize, PAGE_EXECUTE_READ, &before);
    return traps;
}

}  // namespace simhost
