// Answers the message boxes that the plug-in shows while a message is being handled: a thread finds the box, reads it
// and presses its OK button.
#pragma once

#include <windows.h>

#include <atomic>
#include <string>
#include <vector>

#include "doubles/common/Thread.h"

namespace simhost {

struct ShownBox {
    std::string caption;
    std::string text;
    bool topmost;  // system-modal boxes are
    int buttons;
    bool icon;
};

class BoxWatcher {
  public:
    BoxWatcher();
    ~BoxWatcher();
    BoxWatcher(const BoxWatcher&) = delete;
    BoxWatcher& operator=(const BoxWatcher&) = delete;

    // Boxes are looked for between the two calls only: the host's own dialogs are nobody's business.
    void Watch() { mWatching = true; }
    std::vector<ShownBox> StopAndTake();

  private:
    void Run();
    void Answer(HWND window);
    static BOOL CALLBACK OnWindow(HWND window, LPARAM self);

    std::atomic<bool> mWatching{false};
    HANDLE mEnding;  // an event: the thread is to end
    Mutex mMutex;
    std::vector<ShownBox> mBoxes;
    HWND mAnswered = nullptr;  // the watcher's own
    DWORD mMainThread;
    Thread mThread;
};

}  // namespace simhost
