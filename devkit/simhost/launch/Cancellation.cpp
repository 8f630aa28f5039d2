#include "simhost/launch/Cancellation.h"

#include <windows.h>

#include <atomic>

namespace simhost {

namespace {

// Set by a thread of Windows' own, for good.
std::atomic<bool> sIsRequested{false};

// Windows ends the process as soon as this has returned for a console that closes: the main thread ends it before.
constexpr DWORD kTimeToPutBack = 10'000;

BOOL WINAPI OnRequest(DWORD request) {
    sIsRequested = true;
    if (request != CTRL_C_EVENT && request != CTRL_BREAK_EVENT) {
        Sleep(kTimeToPutBack);
    }
    return TRUE;
}

}  // namespace

void ListenForCancellation() {
    static const BOOL sListens = SetConsoleCtrlHandler(&OnRequest, TRUE);
    static_cast<void>(sListens);
}

void ThrowIfCancelled() {
    if (sIsRequested) {
        throw Cancelled();
    }
}

}  // namespace simhost
