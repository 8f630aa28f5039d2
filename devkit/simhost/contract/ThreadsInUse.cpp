#include "simhost/contract/ThreadsInUse.h"

#include <windows.h>
// After windows.h, which it needs.
#include <tlhelp32.h>

namespace simhost::contract {

namespace {

constexpr DWORD kStepMilliseconds = 10;
constexpr ULONGLONG kLongestMilliseconds = 1'000;

}  // namespace

long long ThreadsInUse() {
    const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    long long count = 0;
    for (BOOL more = Thread32First(snapshot, &entry); more != 0; more = Thread32Next(snapshot, &entry)) {
        count += entry.th32OwnerProcessID == GetCurrentProcessId() ? 1 : 0;
    }
    CloseHandle(snapshot);
    return count;
}

void WaitForThreadsToEnd(long long count) {
    const ULONGLONG end = GetTickCount64() + kLongestMilliseconds;
    while (ThreadsInUse() > count && GetTickCount64() < end) {
        Sleep(kStepMilliseconds);
    }
}

}  // namespace simhost::contract
