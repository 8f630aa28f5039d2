#include "simhost/contract/DialogAnswerer.h"

#include <windows.h>

#include <algorithm>
#include <map>
#include <optional>
#include <string>

#include "doubles/common/Text.h"
#include "doubles/common/Thread.h"
#include "simhost/contract/ContractBook.h"
#include "simhost/contract/GuardedCall.h"

namespace simhost::contract {

namespace {

constexpr DWORD kPauseMilliseconds = 50;
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

class DialogAnswerer {
  public:
    explicit DialogAnswerer(DWORD thread) : mThread(thread) {}

    [[noreturn]] void Run() {
        for (;;) {
            Sleep(kPauseMilliseconds);
            if (const std::optional<CallUnderWay> call = EntryUnderWay()) {
                mCall = *call;
                EnumThreadWindows(mThread, &OnWindow, reinterpret_cast<LPARAM>(this));
            } else {
                mSeen.clear();
            }
        }
    }

  private:
    static BOOL CALLBACK OnWindow(HWND window, LPARAM self) {
        reinterpret_cast<DialogAnswerer*>(self)->Look(window);
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
    CallUnderWay mCall;
    std::map<HWND, int> mSeen;
};

}  // namespace

void AnswerDialogs() {
    const DWORD thread = GetCurrentThreadId();
    // For good.
    Thread([thread] { DialogAnswerer(thread).Run(); }).Detach();
}

}  // namespace simhost::contract
