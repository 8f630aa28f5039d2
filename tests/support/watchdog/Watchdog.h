// No test run hangs silently: a test that takes too long is named, with the stack of its thread, and the process ends.
#pragma once

#include <windows.h>

// What a test program ends with whose test took too long. Small, because Wine cuts exit codes to 8 bits.
constexpr UINT kWatchdogExitCode = 97;

// Watches every test of this process from now on; call it on the thread that runs the tests, after gtest's own
// initialisation. `seconds` is the time for one test; 0 watches nothing, for work with a debugger.
void WatchTests(int seconds);
