#include "simhost/by_hand/HostWindow.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "doubles/common/Text.h"
#include "simhost/by_hand/Controls.h"

namespace simhost {

namespace {

constexpr UINT kFirstMenuCommand = 1000;
constexpr UINT_PTR kIdleTimer = 1;
constexpr UINT kIdleMilliseconds = 1000;
constexpr ULONGLONG kTraceMilliseconds = 100;

}  // namespace

HostWindow::HostWindow(MenuModel& menus, WindowEvents events)
    : mMenus(menus), mEvents(std::move(events)), mMenuBar(kFirstMenuCommand) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &WindowProcedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    windowClass.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));
    windowClass.lpszClassName = kHostWindowClass;
    RegisterClassW(&windowClass);
    mWindow = CreateWindowExW(0, kHostWindowClass, L"Host by hand", WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, 20, 20, 1100,
                              700, nullptr, nullptr, windowClass.hInstance, this);
    if (mWindow == nullptr) {
        throw std::runtime_error("the host's window cannot be made: is there a display?");
    }
    ShowMenus();
    ShowWindow(mWindow, SW_SHOWNORMAL);
    SetForegroundWindow(mWindow);
    SetTimer(mWindow, kIdleTimer, kIdleMilliseconds, nullptr);
}

HostWindow::~HostWindow() {
    if (mWindow != nullptr) {
        DestroyWindow(mWindow);
    }
    DeleteObject(mFont);
    DeleteObject(mTraceFont);
}

void HostWindow::Run() {
    const HACCEL keys = MakeAccelerators();
    MSG message;
    while (mWindow != nullptr && GetMessageW(&message, nullptr, 0, 0) > 0) {
        // Keys of other windows, such as a dialog of the plug-in, are theirs.
        const bool isOurs = message.hwnd == mWindow || IsChild(mWindow, message.hwnd) != 0;
        if (!isOurs ||
            (TranslateAcceleratorW(mWindow, keys, &message) == 0 && IsDialogMessageW(mWindow, &message) == 0)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    DestroyAcceleratorTable(keys);
    if (mError != nullptr) {
        std::rethrow_exception(mError);
    }
}

LRESULT CALLBACK HostWindow::WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        auto* const self = static_cast<HostWindow*>(reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpCreateParams);
        self->mWindow = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(self));
    }
    auto* const self = reinterpret_cast<HostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    return self == nullptr ? DefWindowProcW(window, message, wParam, lParam)
                           : self->HandleAndCatch(message, wParam, lParam);
}

// No exception may go through the frames of Windows.
LRESULT HostWindow::HandleAndCatch(UINT message, WPARAM wParam, LPARAM lParam) {
    try {
        return Handle(message, wParam, lParam);
    } catch (...) {
        mError = std::current_exception();
        DestroyWindow(mWindow);
        return 0;
    }
}

LRESULT HostWindow::Handle(UINT message, WPARAM wParam, LPARAM lParam) {
    const HWND window = mWindow;
    switch (message) {
        case WM_CREATE:
            MakeControls();
            return 0;
        case WM_SIZE:
            Lay(LOWORD(lParam), HIWORD(lParam));
            return 0;
        case WM_TIMER:
            // Also while an act waits for a dialog.
            ShowTrace();
            mEvents.onIdle();
            return 0;
        case WM_COMMAND:
            OnCommand(LOWORD(wParam), HIWORD(wParam));
            return 0;
        case WM_ENTERMENULOOP:
            mMenuIsOpen = true;
            return 0;
        case WM_EXITMENULOOP:
            mMenuIsOpen = false;
            if (std::exchange(mMenusAreOld, false)) {
                ShowMenus();
            }
            return 0;
        case WM_INITMENUPOPUP: {
            const auto menu = reinterpret_cast<HMENU>(wParam);
            mEvents.onMenuOpened(mMenuBar.ItemsOf(menu));
            mMenuBar.Refresh(menu, mMenus);
            return 0;
        }
        case WM_NCDESTROY:
            mWindow = nullptr;
            return DefWindowProcW(window, message, wParam, lParam);
        default:
            return DefWindowProcW(window, message, wParam, lParam);
    }
}

void HostWindow::OnCommand(UINT identifier, UINT code) {
    if (const void* const item = mMenuBar.ItemOf(identifier)) {
        mEvents.onMenuItem(item);
    } else if (identifier == kDocumentList) {
        if (code == LBN_SELCHANGE) {
            EnableButtons();
            mEvents.onDocumentSelected(SelectedDocument());
        } else if (code == LBN_DBLCLK) {
            mEvents.onCommand(WindowCommand::kOpen);
        }
    } else if (const auto command = CommandOf(static_cast<int>(identifier))) {
        mEvents.onCommand(*command);
    }
}

void HostWindow::MakeControls() {
    mFont = MakeFont(L"Tahoma", VARIABLE_PITCH | FF_SWISS);
    mTraceFont = MakeFont(L"Courier New", FIXED_PITCH | FF_MODERN);
    MakeAllControls(mWindow, mFont);
    SendMessageW(Control(kTrace), WM_SETFONT, reinterpret_cast<WPARAM>(mTraceFont), TRUE);
}

void HostWindow::Lay(int width, int height) const { LayControls(mWindow, width, height); }

void HostWindow::Append(const std::string& traceLine) {
    mAppended += Wide(traceLine) + L"\r\n";
    if (GetTickCount64() >= mTraceShownAt + kTraceMilliseconds) {
        ShowTrace();
    }
}

void HostWindow::ShowTrace() {
    mTraceShownAt = GetTickCount64();
    if (mWindow != nullptr && !mAppended.empty()) {
        AppendText(Control(kTrace), std::exchange(mAppended, {}));
        // Windows would leave it for later, also when the next call of the plug-in takes its time.
        UpdateWindow(Control(kTrace));
    }
}

void HostWindow::ShowDocuments(const std::vector<DocumentLine>& documents) {
    if (mWindow == nullptr) {
        return;
    }
    const HWND list = Control(kDocumentList);
    const std::string selected = SelectedDocument();
    const bool hasCurrent =
        std::any_of(documents.begin(), documents.end(), [](const auto& one) { return one.current; });
    SendMessageW(list, LB_RESETCONTENT, 0, 0);
    mDocuments = documents;
    for (const DocumentLine& document : documents) {
        const LRESULT index =
            SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(document.text).c_str()));
        if (document.current || (!hasCurrent && document.name == selected)) {
            SendMessageW(list, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
        }
    }
    EnableButtons();
}

// Commands mean the selected document: one that is closed can be opened, the current one all else.
void HostWindow::EnableButtons() const {
    const DocumentLine* const selected = Selected();
    EnableCommands(mWindow, selected != nullptr && !selected->open, selected != nullptr && selected->current);
    if (IsWindowEnabled(GetFocus()) == 0) {
        SetFocus(Control(kDocumentList));
    }
}

void HostWindow::ShowPanel(const std::string& text) { SetWindowTextW(Control(kPanelText), Wide(text).c_str()); }

void HostWindow::ShowFonts(const std::string& fonts) { SetWindowTextW(Control(kFonts), Wide(fonts).c_str()); }

std::string HostWindow::Fonts() const {
    const HWND edit = Control(kFonts);
    std::wstring text(static_cast<std::size_t>(GetWindowTextLengthW(edit)) + 1, L'\0');
    text.resize(static_cast<std::size_t>(GetWindowTextW(edit, text.data(), static_cast<int>(text.size()))));
    return Utf8(text);
}

const DocumentLine* HostWindow::Selected() const {
    if (mWindow == nullptr) {
        return nullptr;
    }
    const LRESULT index = SendMessageW(Control(kDocumentList), LB_GETCURSEL, 0, 0);
    return index < 0 || static_cast<std::size_t>(index) >= mDocuments.size()
               ? nullptr
               : &mDocuments[static_cast<std::size_t>(index)];
}

std::string HostWindow::SelectedDocument() const {
    const DocumentLine* const selected = Selected();
    return selected == nullptr ? "" : selected->name;
}

void HostWindow::ShowMenus() {
    if (mWindow == nullptr) {
        return;
    }
    if (mMenuIsOpen) {
        mMenusAreOld = true;
    } else {
        mMenuBar.ShowIn(mWindow, mMenus);
    }
}

}  // namespace simhost
