#include "simhost/launch/DesktopLock.h"

#include <windows.h>

#include <cstdio>
#include <stdexcept>

#include "simhost/launch/Cancellation.h"

namespace simhost {

namespace {

constexpr DWORD kSilentMilliseconds = 1000;
constexpr DWORD kPauseMilliseconds = 100;

// Kept until the process ends. A process that was killed has abandoned it, which is as good as given back.
HANDLE sMutex = nullptr;

bool IsTaken(HANDLE mutex, DWORD milliseconds) {
    const DWORD result = WaitForSingleObject(mutex, milliseconds);
    return result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
}

}  // namespace

bool TakeDesktop(bool waits) {
    if (sMutex != nullptr) {
        return false;
    }
    const HANDLE mutex = CreateMutexW(nullptr, FALSE, L"Local\\simhost-plays");
    if (mutex == nullptr) {
        throw std::runtime_error("Windows gives no mutex (error " + std::to_string(GetLastError()) + ")");
    }
    if (!IsTaken(mutex, waits ? kSilentMilliseconds : 0)) {
        if (!waits) {
            CloseHandle(mutex);
            throw std::runtime_error("another simhost plays on this desktop, and --no-wait says not to wait for it");
        }
        std::fputs("simhost: waits for another simhost that plays on this desktop\n", stderr);
        std::fflush(stderr);
        while (!IsTaken(mutex, kPauseMilliseconds)) {
            ThrowIfCancelled();
        }
    }
    sMutex = mutex;
    return true;
}

}  // namespace simhost
