#include "dialogs/SuppressionHook.h"

#include <string>

#include "dialogs/SuppressionWords.h"
#include "support/Log.h"
#include "support/TextConversion.h"

namespace {

// The atom of the standard dialog class. A dialog created by the class's name is not examined: intentional,
// the host's own dialogs come by the atom.
constexpr ULONG_PTR kDialogClassAtom = 0x8002;

// All of it lives as long as the process and is touched by the host's main thread only.
HHOOK sHook = nullptr;            // null while no hook is installed
bool sSuppressionActive = false;  // switched by the document-opened handler
HWND sPendingDialog = nullptr;    // the one dialog between its creation and its first show message

bool TitleIsSuppressed(const std::wstring& title) {
    const std::string titleForLog = Utf8FromWindowsText(title);
    for (const std::wstring& word : SuppressionWordList()) {
        const std::string wordForLog = Utf8FromWindowsText(word);
        LogMessage(kLogNote, "Does '%s' contain '%s'?", titleForLog.c_str(), wordForLog.c_str());
        if (title.find(word) != std::wstring::npos) {
            LogMessage(kLogNote, "Found '%s' in Window titled '%s'?", wordForLog.c_str(), titleForLog.c_str());
            return true;
        }
    }
    return false;
}

void OnWindowCreated(HWND window, const CREATESTRUCTW& creation) {
    if (reinterpret_cast<ULONG_PTR>(creation.lpszClass) != kDialogClassAtom || creation.lpszName == nullptr) {
        return;
    }
    if (TitleIsSuppressed(creation.lpszName)) {
        sPendingDialog = window;
    }
}

// Everything is posted, never sent: it takes effect after the dialog has dealt with its show message.
void OnPendingDialogShown(HWND dialog) {
    if (const HWND okButton = GetDlgItem(dialog, IDOK); okButton != nullptr) {
        PostMessageW(okButton, BM_CLICK, 0, 0);
        PostMessageW(dialog, WM_SHOWWINDOW, FALSE, 0);
    } else {
        PostMessageW(dialog, WM_KEYDOWN, VK_RETURN, 0);
        PostMessageW(dialog, WM_KEYUP, VK_RETURN, 0);
    }
    sPendingDialog = nullptr;
}

void OnMessage(const CWPSTRUCT& message) {
    if (sPendingDialog == nullptr) {
        if (message.message == WM_CREATE) {
            OnWindowCreated(message.hwnd, *reinterpret_cast<const CREATESTRUCTW*>(message.lParam));
        }
    } else if (message.message == WM_SHOWWINDOW && message.hwnd == sPendingDialog) {
        OnPendingDialogShown(message.hwnd);
    }
}

}  // namespace

void InstallSuppressionHook() {
    if (sHook == nullptr) {
        sHook = SetWindowsHookExW(WH_CALLWNDPROC, SuppressionHookProc, nullptr, GetCurrentThreadId());
    }
}

void RemoveSuppressionHook() {
    if (sHook != nullptr) {
        UnhookWindowsHookEx(sHook);
        sHook = nullptr;
    }
}

void SetSuppressionActive(bool active) { sSuppressionActive = active; }

bool IsSuppressionActive() { return sSuppressionActive; }

LRESULT CALLBACK SuppressionHookProc(int code, WPARAM wParam, LPARAM lParam) noexcept {
    if (code >= 0 && sSuppressionActive) {
        try {
            OnMessage(*reinterpret_cast<const CWPSTRUCT*>(lParam));
        } catch (...) {
            // Only memory can have run out: the dialog then stays for the user to close.
        }
    }
    return CallNextHookEx(sHook, code, wParam, lParam);
}
