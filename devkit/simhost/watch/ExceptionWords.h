// What an exception of Windows is, for people.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

namespace simhost {

// How the words of an exception begin that some runtime library raised, with a code of its own.
constexpr const char* kRaisedException = "raised exception";

std::string InWords(const EXCEPTION_RECORD& record);
// "access violation (0xC0000005)".
std::string NameOfException(std::uint32_t code);
// Whether the processor raised it, and no program by throwing something.
bool IsFault(std::uint32_t code);
// Whether it is one that ends a process at once, past all of its handlers.
bool IsFailFast(std::uint32_t code);
// "7 (0x00000007)".
std::string ExitCodeInWords(std::uint32_t code);

}  // namespace simhost
