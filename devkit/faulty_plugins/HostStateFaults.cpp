#include "HostStateFaults.h"

#include <windows.h>

#include <xmmintrin.h>

#include <clocale>
#include <cstdint>

#include "doubles/common/CompilerSupport.h"

namespace {

constexpr unsigned kUsualMxcsr = 0x1F80;
constexpr unsigned kSinglePrecision = 0xFCFF;  // of the bits for the precision, none
constexpr unsigned kRoundUp = 0x4000;
constexpr DWORD kAnotherErrorMode = SEM_NOOPENFILEERRORBOX;

bool sChangesWhenUnloaded = false;
HHOOK sHook = nullptr;

LONG WINAPI HandleNothing(EXCEPTION_POINTERS*) { return EXCEPTION_CONTINUE_SEARCH; }

LRESULT CALLBACK ChangeErrorModeOnce(int code, WPARAM wParam, LPARAM lParam) {
    SetErrorMode(kAnotherErrorMode);
    UnhookWindowsHookEx(sHook);
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

}  // namespace

void LeaveFolder() { SetCurrentDirectoryW(L"C:\\windows"); }

void LeaveLibraryFolder() { SetDllDirectoryW(L"C:\\windows"); }

// By its number, which is the same in all languages.
void LeaveLocale() { setlocale(LC_ALL, ".1250"); }

void LeaveThreadLocale() { SetThreadLocale(MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT)); }

void LeaveRounding() { _mm_setcsr(_mm_getcsr() | kRoundUp); }

void LeaveX87Precision() { SetX87ControlWord(static_cast<std::uint16_t>(X87ControlWord() & kSinglePrecision)); }

void LeaveErrorMode() { SetErrorMode(kAnotherErrorMode); }

void LeaveThreadErrorMode() { SetThreadErrorMode(kAnotherErrorMode, nullptr); }

void LeaveExceptionFilter() { SetUnhandledExceptionFilter(&HandleNothing); }

void LeaveEnvironment() { SetEnvironmentVariableW(L"QUORVEL_FAULT", L"left"); }

void LeaveWhatWindowsBeginsWith() {
    SetDllDirectoryW(nullptr);
    setlocale(LC_ALL, "C");
    SetThreadLocale(LOCALE_USER_DEFAULT);
    _mm_setcsr(kUsualMxcsr);
    ResetX87();
    SetErrorMode(0);
    SetThreadErrorMode(0, nullptr);
    SetUnhandledExceptionFilter(nullptr);
}

void PutEverythingBack() {
    const LPTOP_LEVEL_EXCEPTION_FILTER filter = SetUnhandledExceptionFilter(&HandleNothing);
    SetUnhandledExceptionFilter(filter);
    SetEnvironmentVariableW(L"QUORVEL_FAULT", L"left");
    SetEnvironmentVariableW(L"QUORVEL_FAULT", nullptr);
    const UINT mode = SetErrorMode(kAnotherErrorMode);
    SetErrorMode(mode);
    const unsigned control = _mm_getcsr();
    LeaveRounding();
    _mm_setcsr(control);
}

void LeaveErrorModeInHook() {
    sHook = SetWindowsHookExW(WH_CALLWNDPROC, &ChangeErrorModeOnce, nullptr, GetCurrentThreadId());
}

void LeaveErrorModeWhenUnloaded() { sChangesWhenUnloaded = true; }

void OnUnload() {
    if (sChangesWhenUnloaded) {
        LeaveErrorMode();
    }
}
