// A test program that crashes names the test and ends at once, without a window that waits for somebody.
#pragma once

#include <windows.h>

// What a crashed test program ends with. Small, because Wine cuts exit codes to 8 bits.
constexpr UINT kCrashExitCode = 98;

// From now on an exception that nobody handles prints the running test, the exception's code and address and the stack
// to the standard error output, and ends the process with kCrashExitCode; abort() prints the running test. Call it on
// the main thread, and before any test runs.
void ReportCrashes();
