#include "simhost/checks/BoxWatcher.h"

#include <utility>

#include "simhost/watch/WindowText.h"
#include "simhost/windows/HostDialog.h"

namespace simhost {

namespace {

constexpr DWORD kPauseMilliseconds = 20;
// The window's thread may be busy for a while, or for good.
constexpr UINT kPatienceMilliseconds = 2000;

// Adds what one control of the box shows.
BOOL CALLBACK ReadControl(HWND control, LPARAM shownBox) {
    ShownBox& box = *reinterpret_cast<ShownBox*>(shownBox);
    const std::wstring name = ClassOfWindow(control);
    const bool isIcon = (GetWindowLongW(control, GWL_STYLE) & SS_TYPEMASK) == SS_ICON;
    if (name == L"Button") {
        box.buttons += IsWindowVisible(control) != 0 ? 1 : 0;
    } else if (name == L"Static" && isIcon) {
        DWORD_PTR icon = 0;
        SendMessageTimeoutW(control, STM_GETICON, 0, 0, SMTO_ABORTIFHUNG, kPatienceMilliseconds, &icon);
        box.icon = box.icon || icon != 0;
    } else if (name == L"Static") {
        box.text += TextOfWindow(control, kPatienceMilliseconds);
    }
    return TRUE;
}

}  // namespace

BoxWatcher::BoxWatcher()
    : mEnding(CreateEventW(nullptr, TRUE, FALSE, nullptr)),
      mMainThread(GetCurrentThreadId()),
      mThread([this] { Run(); }) {}

BoxWatcher::~BoxWatcher() {
    SetEvent(mEnding);
    mThread.Join();
    CloseHandle(mEnding);
}

std::vector<ShownBox> BoxWatcher::StopAndTake() {
    mWatching = false;
    const std::lock_guard lock(mMutex);
    return std::exchange(mBoxes, {});
}

void BoxWatcher::Run() {
    while (WaitForSingleObject(mEnding, kPauseMilliseconds) == WAIT_TIMEOUT) {
        if (mWatching) {
            EnumThreadWindows(mMainThread, &OnWindow, reinterpret_cast<LPARAM>(this));
        }
    }
}

BOOL CALLBACK BoxWatcher::OnWindow(HWND window, LPARAM self) {
    auto& watcher = *reinterpret_cast<BoxWatcher*>(self);
    // Asked before and after: the host may be about to show its dialog, or to take it away.
    if (watcher.mWatching && window != watcher.mAnswered && !IsHostDialog(window) && IsWindowVisible(window) != 0 &&
        ClassOfWindow(window) == L"#32770" && !IsHostDialog(window)) {
        watcher.Answer(window);
    }
    return TRUE;
}

void BoxWatcher::Answer(HWND window) {
    ShownBox box{TextOfWindow(window, kPatienceMilliseconds), "",
                 (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_TOPMOST) != 0, 0, false};
    EnumChildWindows(window, &ReadControl, reinterpret_cast<LPARAM>(&box));
    {
        const std::lock_guard lock(mMutex);
        mBoxes.push_back(std::move(box));
    }
    mAnswered = window;
    // A box whose only button is OK answers with it whatever the button's identifier is.
    PostMessageW(window, WM_COMMAND, MAKEWPARAM(IDOK, BN_CLICKED), 0);
}

}  // namespace simhost
