#include "SweepFaults.h"

#include <windows.h>

#include <cstdlib>
#include <cstring>

#include "FatalFaults.h"
#include "HeldSuite.h"
#include "host/Messages.h"
#include "host/SPSuites.h"

// It is the C runtime's malloc that a sweep lets fail. NOLINTBEGIN(cppcoreguidelines-no-malloc)

namespace {

// In the table of the process, where it breaks no rule of the host.
constexpr const wchar_t* kMark = L"QUORVEL_SPOILT_BY_A_FAULT";

bool sIsBusy = false;
bool sIsSpoilt = false;
bool sGaveAllBack = true;
// Of the run before, which the library was already loaded for.
bool sHasFailed = false;
bool sMisuses = false;

// One call of each kind that a sweep lets fail: a block of the C runtime, a handle of Windows, a suite, a block of the
// host. All is given back. True when all succeeded.
bool CallEachKind() {
    void* const memory = std::malloc(16);
    const HANDLE file = CreateFileW(L"NUL", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    const auto* const blocks = Acquire<SPBlocksSuite>("SP Blocks Suite", 2);
    void* block = nullptr;
    const bool hasBlock = blocks != nullptr && blocks->AllocateBlock(8, "one of each kind", &block) == 0;
    if (hasBlock) {
        sGaveAllBack = blocks->FreeBlock(block) == 0 && sGaveAllBack;
    }
    if (blocks != nullptr) {
        sGaveAllBack = sMessage->basic->ReleaseSuite("SP Blocks Suite", 2) == 0 && sGaveAllBack;
    }
    if (file != INVALID_HANDLE_VALUE) {
        CloseHandle(file);
    }
    std::free(memory);
    return memory != nullptr && file != INVALID_HANDLE_VALUE && hasBlock;
}

}  // namespace

void BearFailures() { CallEachKind(); }

void LeakWhenACallFails() {
    void* volatile memory = std::malloc(32);
    if (CallEachKind()) {
        std::free(memory);
    }
}

void KeepAHandleWhenACallFails() {
    const HANDLE event = CreateFileW(L"NUL", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    if (CallEachKind() && event != INVALID_HANDLE_VALUE) {
        CloseHandle(event);
    }
}

// One that no plug-in holds longer than for a moment.
void KeepASuiteWhenACallFails() {
    const void* const menus = Acquire<void>("AI Menu Suite", 11);
    if (CallEachKind() && menus != nullptr) {
        sMessage->basic->ReleaseSuite("AI Menu Suite", 11);
    }
}

void CrashWhenACallFails() {
    if (!CallEachKind()) {
        AccessViolation();
    }
}

void HangWhenACallFails() {
    if (!CallEachKind()) {
        Hang();
    }
}

void ThrowWhenACallFails() {
    if (!CallEachKind()) {
        ThrowException();
    }
}

void StayBusyWhenACallFails() { sIsBusy = !CallEachKind(); }

void LeaveTheErrorModeWhenACallFails() {
    const UINT before = SetErrorMode(SEM_NOOPENFILEERRORBOX);
    if (CallEachKind()) {
        SetErrorMode(before);
    }
}

void SpoilTheNextRunWhenACallFails() {
    if (!CallEachKind()) {
        AddAtomW(kMark);
        sHasFailed = true;
    }
    sIsSpoilt = !sHasFailed && sGaveAllBack && FindAtomW(kMark) != 0;
}

void UseWhatAFailedCallGave() {
    const Held<SPBlocksSuite> blocks("SP Blocks Suite", 2);
    if (blocks.operator->() == nullptr) {
        return;
    }
    void* block = nullptr;
    blocks->AllocateBlock(8, "given or not", &block);
    if (block != nullptr) {
        blocks->FreeBlock(block);
    }
}

void LeaveAProcessWhenACallFails() {
    if (!CallEachKind()) {
        LeaveProcess();
    }
}

void StopCallingWhenACallHasFailed() { sHasFailed = sHasFailed || !CallEachKind(); }

void CrashWhenACallHasFailed() {
    if (sHasFailed) {
        AccessViolation();
    }
    sHasFailed = !CallEachKind();
}

void MisuseTheHostAfterwards() { sMisuses = !CallEachKind(); }

void ActAfterwards(const char* selector) {
    if (sMisuses && std::strcmp(selector, kSPInterfaceAboutSelector) == 0) {
        int none = 0;
        Held<SPBlocksSuite>("SP Blocks Suite", 2)->FreeBlock(&none);
    }
}

bool IsBusyForEver() { return sIsBusy; }

bool IsSpoilt() { return sIsSpoilt; }

// NOLINTEND(cppcoreguidelines-no-malloc)
