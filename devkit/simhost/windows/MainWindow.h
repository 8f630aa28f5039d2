// The host's own window, visible and in the foreground, so that the plug-in finds a real one to switch from.
#pragma once

#include <windows.h>

#include <cstdint>

namespace simhost {

// Known to whoever looks for other windows of the host.
inline constexpr const wchar_t* kMainWindowClass = L"QuorvelSimulatedHost";

class MainWindow {
  public:
    // Throws std::runtime_error when no window can be shown.
    MainWindow();
    ~MainWindow();
    MainWindow(const MainWindow&) = delete;
    MainWindow& operator=(const MainWindow&) = delete;

    // Handles what waits in the thread's queue.
    void HandleWaitingMessages() const;
    // How often the window lost the foreground and got it back since the last call.
    std::int64_t TakeForegroundSwitches();
    // Whether the window is in the foreground.
    HWND Handle() const { return mWindow; }

  private:
    HWND mWindow;
};

}  // namespace simhost
