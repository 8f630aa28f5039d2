// The one logging call of the plug-in. Every operation of note logs its entry, its exit and what it finds; the shipped
// plug-in formats each line and drops it, a diagnostic build routes it (LogSink.h). Never fails, never throws,
// allocates nothing.
// Thread: any.
#pragma once

#include <cstddef>
#include <cstdint>

#include "support/CompilerSupport.h"

// A line longer than this, terminator included, is cut.
constexpr std::size_t kLogBufferSize = 8192;

constexpr std::int32_t kLogEntry = 1;
constexpr std::int32_t kLogExit = -1;
constexpr std::int32_t kLogNote = 0;

// Formats like printf, narrow strings, and hands the line to the log sink. `level` is a nesting step for the reader of
// the lines: kLogEntry, kLogExit or kLogNote.
void LogMessage(std::int32_t level, const char* format, ...) QUORVEL_PRINTF_FORMAT(2, 3);

// Formats like LogMessage and ends the text with a line feed, unless it ends in one already or leaves no room for it
// (8190 characters or more). Returns the length in characters. The text goes nowhere.
std::int32_t LogLine(const char* format, ...) QUORVEL_PRINTF_FORMAT(1, 2);

// The low 32 bits of an address or handle, the form in which the log shows them.
inline std::uint32_t Low32(const void* address) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(address));
}
