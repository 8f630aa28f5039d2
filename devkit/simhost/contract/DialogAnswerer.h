// Stands for the person who answers dialogs while a library has the main thread: presses OK, and closes what does not
// go away; a dialog of an entry that is not there for dialogs is a finding. A window that was there before the call is
// no dialog of it.
#pragma once

#include <windows.h>

#include <vector>

namespace simhost::contract {

// From now on, for the windows of this thread, on a thread of its own, until the process ends. Thread: main.
void AnswerDialogs();

// Of that thread and not the host's; none as long as nobody answers. Thread: any.
std::vector<HWND> VisibleWindows();

}  // namespace simhost::contract
