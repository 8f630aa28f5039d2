#include "simhost/contract/DialogAnswerer.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <utility>

#include "doubles/common/Text.h"
#include "doubles/common/Thread.h"
#include "simhost/contract/CallStack.h"
#include "simhost/contract/ContractBook.h"

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

bool IsOfHost(HWND window) {
    wchar_t name[64] = L"";
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    return std::wstring_view(name) == kClassOfHost;
}

// The thread whose dialogs are answered; 0 before.
std::atomic<DWORD> sThread = 0;

class DialogAnswerer {
  public:
    [[noreturn]] void Run() {
        for (;;) {
            Sleep(kPauseMilliseconds);
            if (const std::optional<CallUnderWay> call = EntryUnderWay()) {
                mCall = *call;
                // Those that are gone are forgotten: another may get the same handle.
                const Pauses before = std::exchange(mPauses, {});
                for (const HWND window : VisibleWindows()) {
                    Look(window, before);
                }
            } else {
                mPauses.clear();
            }
        }
    }

  private:
    using Pauses = std::map<std::tuple<std::string, int, HWND>, int>;  // by the call and its window

    void Look(HWND window, const Pauses& earlier) {
        const std::vector<HWND>& before = mCall.windowsBefore;
        if (std::find(before.begin(), before.end(), window) != before.end()) {
            return;
        }
        const auto key = std::tuple(mCall.entry, mCall.number, window);
        const auto known = earlier.find(key);
        const int pauses = mPauses[key] = known == earlier.end() ? 1 : known->second + 1;
        if (pauses == kPausesUntilOk) {
            if (!ShowsDialogs(mCall.entry)) {
                Book().Broken({ClauseId::kDialog, mCall.entry, mCall.number,
                               "shows the window \"" + Title(window) + "\" while it is under way"});
            }
            PostMessageW(window, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), 0);
        } else if (pauses == kPausesUntilClose) {
            PostMessageW(window, WM_CLOSE, 0, 0);
        }
    }

    CallUnderWay mCall;
    Pauses mPauses;
};

}  // namespace

void AnswerDialogs() {
    sThread = GetCurrentThreadId();
    // For good.
    Thread([] { DialogAnswerer().Run(); }).Detach();
}

std::vector<HWND> VisibleWindows() {
    std::vector<HWND> windows;
    const auto add = [](HWND window, LPARAM list) -> BOOL {
        if (IsWindowVisible(window) != 0 && !IsOfHost(window)) {
            reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
        }
        return TRUE;
    };
    if (sThread != 0) {
        EnumThreadWindows(sThread, add, reinterpret_cast<LPARAM>(&windows));
    }
    return windows;
}

}  // namespace simhost::contract
