// Text for the standard error output from a process of which little still works.
#pragma once

#include <windows.h>

// Formats like printf (at most 1023 characters) and writes at once, past the C library's streams: the thread that
// crashed or hangs may hold their lock.
void PrintEmergency(const char* format, ...);

// One line per frame of the given registers: the module's file name and the address as it stands in the file, which
// addr2line understands. `context` is used up.
void PrintStackTrace(CONTEXT& context);
