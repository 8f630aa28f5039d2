#include "simhost/windows/MainWindow.h"

#include <stdexcept>
#include <utility>

namespace simhost {

namespace {

// Counted by the window procedure, taken by the one window of the process.
bool sActive = false;
bool sLost = false;
std::int64_t sSwitches = 0;

void OnActivate(bool active) {
    if (!active) {
        sLost = sActive;
    } else if (std::exchange(sLost, false)) {
        ++sSwitches;
    }
    sActive = active;
}

LRESULT CALLBACK WindowProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_ACTIVATE) {
        OnActivate(LOWORD(wParam) != WA_INACTIVE);
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

}  // namespace

MainWindow::MainWindow() {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &WindowProcedure;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
    windowClass.lpszClassName = kMainWindowClass;
    RegisterClassW(&windowClass);
    mWindow = CreateWindowExW(0, kMainWindowClass, L"Simulated host", WS_OVERLAPPEDWINDOW, 40, 40, 640, 400, nullptr,
                              nullptr, windowClass.hInstance, nullptr);
    if (mWindow == nullptr) {
        throw std::runtime_error("the host's window cannot be made: is there a display?");
    }
    ShowWindow(mWindow, SW_SHOWNORMAL);
    SetForegroundWindow(mWindow);
    HandleWaitingMessages();
    TakeForegroundSwitches();
}

MainWindow::~MainWindow() { DestroyWindow(mWindow); }

void MainWindow::HandleWaitingMessages() const {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE) != 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

std::int64_t MainWindow::TakeForegroundSwitches() { return std::exchange(sSwitches, 0); }

}  // namespace simhost
