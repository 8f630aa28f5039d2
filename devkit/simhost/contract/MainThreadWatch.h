// A second thread for what the main thread cannot do while a library has it. It stands for the person who answers
// dialogs: presses OK, and closes what does not go away; a dialog of an entry that is not there for dialogs is a
// finding. And it tells of a main thread that is lost: ended, or without any stack left.
#pragma once

namespace simhost::contract {

// From now on, for the windows of this thread, until the process ends. Thread: main.
void WatchMainThread();

}  // namespace simhost::contract
