// Where log lines go. Each binary links exactly one definition: the shipped plug-in the one that drops the line, the
// diagnostic plug-in the one that writes it to a file and the debugger (diagnostic/), the unit tests the one that
// records it.
#pragma once

#include <cstdint>

// `level` is 1 on entry to an operation, -1 on exit, 0 otherwise. `text` is terminated and has no line feed of its own,
// unless the message itself ends in one; it belongs to the caller. Must not throw.
// Thread: any.
void WriteLogLine(std::int32_t level, const char* text) noexcept;

// After the last line, when the module is unloaded, alone or because the process ends. For DllMain.
void EndLog(bool processEnds) noexcept;
