#include "simhost/windows/HostDialog.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <stdexcept>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

constexpr const wchar_t* kOtherClassName = L"QuorvelOtherDialog";
constexpr const wchar_t* kStandardClassName = L"#32770";
constexpr DWORD kDialogStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU;
// Whoever reacts to a dialog posts to it while it is being shown, so it is in the queue already. The dialog is over
// when nothing has arrived for so long: the windows system may activate and paint it a little later.
constexpr DWORD kQuietMilliseconds = 30;
constexpr DWORD kLongestMilliseconds = 1000;

// The dialog on show. There is one at a time.
DialogRecord* sRecord = nullptr;
// Its window, from before it is visible until it is gone.
std::atomic<HWND> sWindow = nullptr;
// Whether a person has closed it.
bool sClosed = false;

INT_PTR CALLBACK DialogProcedure(HWND, UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_COMMAND && LOWORD(wParam) == IDOK && sRecord != nullptr) {
        // Kept open until its queue is empty, so that what was posted behind the click is seen too.
        sRecord->endedWithOk = true;
        return TRUE;
    }
    if (message == WM_CLOSE || (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL)) {
        sClosed = true;
        return TRUE;
    }
    if (message == WM_COMMAND && sRecord != nullptr) {
        sRecord->received.emplace_back("WM_COMMAND " + std::to_string(LOWORD(wParam)));
    }
    return FALSE;
}

// A dialog template in memory: no controls, the given class (0: the standard one) and title.
class Template {
  public:
    Template(const std::wstring& className, const std::wstring& title) {
        const DLGTEMPLATE head{kDialogStyle, 0, 0, 20, 20, 160, 60};
        mWords.resize(sizeof head / sizeof(WORD));
        std::memcpy(mWords.data(), &head, sizeof head);
        mWords.push_back(0);  // no menu
        Append(className);
        Append(title);
    }

    const DLGTEMPLATE* Get() const { return reinterpret_cast<const DLGTEMPLATE*>(mWords.data()); }

  private:
    void Append(const std::wstring& text) {
        for (const wchar_t unit : text) {
            mWords.push_back(static_cast<WORD>(unit));
        }
        mWords.push_back(0);
    }

    std::vector<WORD> mWords;
};

void RegisterOtherClass() {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &DefDlgProcW;
    windowClass.cbWndExtra = DLGWINDOWEXTRA;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = kOtherClassName;
    RegisterClassW(&windowClass);
}

HWND CreateFromTemplate(const std::wstring& className, const std::wstring& title, HWND owner = nullptr) {
    return CreateDialogIndirectParamW(GetModuleHandleW(nullptr), Template(className, title).Get(), owner,
                                      &DialogProcedure, 0);
}

HWND CreateByName(const std::wstring& title) {
    const HWND window = CreateWindowExW(WS_EX_DLGMODALFRAME, kStandardClassName, title.c_str(), kDialogStyle, 20, 20,
                                        320, 120, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    SetWindowLongPtrW(window, DWLP_DLGPROC, reinterpret_cast<LONG_PTR>(&DialogProcedure));
    return window;
}

HWND Create(const DialogToShow& dialog) {
    const std::wstring title = Wide(dialog.title);
    switch (dialog.kind) {
        case DialogKind::kStandardByName:
            return CreateByName(title);
        case DialogKind::kOtherClass:
            RegisterOtherClass();
            return CreateFromTemplate(kOtherClassName, title);
        default:
            return CreateFromTemplate(L"", title, dialog.owner);
    }
}

void AddOkButton(HWND window) {
    CreateWindowExW(0, L"BUTTON", L"OK", WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON, 10, 10, 80, 24, window,
                    reinterpret_cast<HMENU>(INT_PTR{IDOK}), GetModuleHandleW(nullptr), nullptr);
}

// Only posted messages come by here: what the dialog gets of its own is sent.
void NotePosted(const MSG& message, HWND window, DialogRecord& record) {
    const bool isReturn = message.wParam == VK_RETURN;
    if (message.message == BM_CLICK && message.hwnd == GetDlgItem(window, IDOK)) {
        record.received.emplace_back("BM_CLICK to OK");
    } else if (message.message == WM_SHOWWINDOW && message.hwnd == window) {
        record.received.emplace_back("WM_SHOWWINDOW " + std::to_string(message.wParam));
    } else if (message.message == WM_KEYDOWN && message.hwnd == window && isReturn) {
        record.received.emplace_back("WM_KEYDOWN Return");
    } else if (message.message == WM_KEYUP && message.hwnd == window && isReturn) {
        record.received.emplace_back("WM_KEYUP Return");
    }
}

// Keys for a dialog are handled as such by Windows; a record in which they were not says so.
void NoteUntaken(const MSG& message, DialogRecord& record) {
    if (message.message == WM_KEYDOWN && message.wParam == VK_RETURN) {
        record.received.emplace_back("which was no dialog message");
    }
}

void HandleMessages(HWND window, bool staysOpen, DialogRecord& record) {
    const ULONGLONG longest = GetTickCount64() + kLongestMilliseconds;
    ULONGLONG end = GetTickCount64() + kQuietMilliseconds;
    for (;;) {
        MSG message;
        if (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
            end = std::min(longest, GetTickCount64() + kQuietMilliseconds);
            NotePosted(message, window, record);
            if (IsDialogMessageW(window, &message) == 0) {
                NoteUntaken(message, record);
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
            continue;
        }
        const ULONGLONG now = GetTickCount64();
        const bool waitsForAPerson = staysOpen && !sClosed;
        if (record.endedWithOk || (now >= end && !waitsForAPerson)) {
            return;
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, waitsForAPerson ? INFINITE : static_cast<DWORD>(end - now),
                                  QS_ALLINPUT);
    }
}

}  // namespace

DialogRecord ShowHostDialog(const DialogToShow& dialog) {
    DialogRecord record;
    sRecord = &record;
    sClosed = false;
    const HWND waiting = dialog.createdBefore.empty() ? nullptr : CreateFromTemplate(L"", Wide(dialog.createdBefore));
    const HWND window = Create(dialog);
    if (window == nullptr) {
        sRecord = nullptr;
        throw std::runtime_error("the dialog \"" + dialog.title + "\" cannot be made");
    }
    if (dialog.okButton) {
        AddOkButton(window);
    }
    sWindow = window;
    EnableWindow(dialog.owner, FALSE);
    ShowWindow(window, SW_SHOWNORMAL);
    HandleMessages(window, dialog.staysOpen, record);
    record.closed = sClosed;
    // Before the dialog goes, or another program's window comes to the front.
    EnableWindow(dialog.owner, TRUE);
    DestroyWindow(window);
    sWindow = nullptr;
    if (waiting != nullptr) {
        DestroyWindow(waiting);
    }
    sRecord = nullptr;
    return record;
}

bool IsHostDialog(HWND window) { return sWindow == window; }

DialogRecord RecordFor(DialogEnd end) {
    switch (end) {
        case DialogEnd::kClickedOk:
            return {{"BM_CLICK to OK", "WM_SHOWWINDOW 0"}, true};
        case DialogEnd::kPressedEnter:
            return {{"WM_KEYDOWN Return", "WM_KEYUP Return"}, true};
        default:
            return {};
    }
}

std::optional<std::string> NameOfEnd(const DialogRecord& record) {
    if (record.closed && record.received.empty()) {
        return "closed";
    }
    for (const auto& [end, name] :
         {std::pair(DialogEnd::kUntouched, "untouched"), std::pair(DialogEnd::kClickedOk, "clicked OK"),
          std::pair(DialogEnd::kPressedEnter, "pressed Enter")}) {
        const DialogRecord expected = RecordFor(end);
        if (record.received == expected.received && record.endedWithOk == expected.endedWithOk) {
            return name;
        }
    }
    return std::nullopt;
}

std::string Describe(const DialogRecord& record) {
    if (auto name = NameOfEnd(record)) {
        return *name;
    }
    std::string text = record.endedWithOk ? "ended with OK" : "not ended";
    for (const std::string& message : record.received) {
        text += ", " + message;
    }
    return text;
}

}  // namespace simhost
