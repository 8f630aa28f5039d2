#include "simhost/contract/MainThreadWatch.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <map>
#include <optional>
#include <string>

#include "doubles/common/Text.h"
#include "doubles/common/Thread.h"
#include "simhost/contract/CodeAddress.h"
#include "simhost/contract/ContractBook.h"
#include "simhost/contract/GuardedCall.h"

namespace simhost::contract {

namespace {

constexpr DWORD kPauseMilliseconds = 50;
constexpr DWORD kMomentMilliseconds = 500;
// What is gone sooner, such as a window that a library only uses for a moment, is no dialog.
constexpr int kPausesUntilOk = 6;
constexpr int kPausesUntilClose = 20;

constexpr std::wstring_view kClassOfHost = L"QuorvelSimulatedHost";
constexpr const char* kDialogEntries[] = {"InvokeCommandDialog", "InvokeResolveDialog", "InvokeRestrictedFontsDialog"};

bool ShowsDialogs(const std::string& entry) {
    return std::any_of(std::begin(kDialogEntries), std::end(kDialogEntries),
                       [&](const char* name) { return entry == name; });
}

std::string Title(HWND window) {
    wchar_t text[128] = L"";
    InternalGetWindowText(window, text, static_cast<int>(std::size(text)));
    return Utf8(std::wstring_view(text));
}

// Where the main thread used up its stack; null as long as it has not.
std::atomic<const void*> sStackUsedUpAt = nullptr;

// There is no stack left for telling it: the other thread does.
LONG CALLBACK OnStackUsedUp(EXCEPTION_POINTERS* pointers) {
    if (pointers->ExceptionRecord->ExceptionCode != EXCEPTION_STACK_OVERFLOW) {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    sStackUsedUpAt = pointers->ExceptionRecord->ExceptionAddress;
    Sleep(INFINITE);
    return EXCEPTION_CONTINUE_SEARCH;
}

class MainThreadWatch {
  public:
    explicit MainThreadWatch(DWORD thread) : mThread(thread), mHandle(OpenThread(SYNCHRONIZE, FALSE, thread)) {}

    [[noreturn]] void Run() {
        for (;;) {
            const bool isThreadGone = WaitForSingleObject(mHandle, kPauseMilliseconds) == WAIT_OBJECT_0;
            const std::optional<CallUnderWay> call = EntryUnderWay();
            if (const void* const code = sStackUsedUpAt) {
                NoteLoss(call.value_or(CallUnderWay{}), "the stack is used up at " + DescribeCode(code));
            }
            if (isThreadGone) {
                // A process that is ended from outside loses its threads one after the other: this one is next.
                Sleep(kMomentMilliseconds);
                NoteLoss(call.value_or(CallUnderWay{}), "the host's main thread was ended");
            }
            if (call) {
                mCall = *call;
                EnumThreadWindows(mThread, &OnWindow, reinterpret_cast<LPARAM>(this));
            } else {
                mSeen.clear();
            }
        }
    }

  private:
    // This thread alone would keep the process alive.
    static void NoteLoss(const CallUnderWay& call, const std::string& what) {
        Book().Broken({ClauseId::kCrash, call.entry, call.number, what});
        TerminateProcess(GetCurrentProcess(), 1);
    }

    static BOOL CALLBACK OnWindow(HWND window, LPARAM self) {
        reinterpret_cast<MainThreadWatch*>(self)->Look(window);
        return TRUE;
    }

    void Look(HWND window) {
        if (IsWindowVisible(window) == 0 || IsOfHost(window)) {
            return;
        }
        const int pauses = ++mSeen[window];
        if (pauses == kPausesUntilOk) {
            if (!ShowsDialogs(mCall.entry)) {
                Book().Broken({ClauseId::kDialog, mCall.entry, mCall.number,
                               "shows the window \"" + Title(window) + "\" and waits"});
            }
            PostMessageW(window, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), 0);
        } else if (pauses == kPausesUntilClose) {
            PostMessageW(window, WM_CLOSE, 0, 0);
        }
    }

    static bool IsOfHost(HWND window) {
        wchar_t name[64] = L"";
        GetClassNameW(window, name, static_cast<int>(std::size(name)));
        return std::wstring_view(name) == kClassOfHost;
    }

    DWORD mThread;
    HANDLE mHandle;  // never closed: the watch lives as long as the process
    CallUnderWay mCall;
    std::map<HWND, int> mSeen;
};

}  // namespace

void WatchMainThread() {
    AddVectoredExceptionHandler(1, &OnStackUsedUp);
    const DWORD thread = GetCurrentThreadId();
    // For good.
    Thread([thread] { MainThreadWatch(thread).Run(); }).Detach();
}

}  // namespace simhost::contract
