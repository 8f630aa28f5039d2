// Stands for the person who answers dialogs while a library has the main thread: presses OK, and closes what does not
// go away; a dialog of an entry that is not there for dialogs is a finding.
#pragma once

namespace simhost::contract {

// From now on, for the windows of this thread, on a thread of its own, until the process ends. Thread: main.
void AnswerDialogs();

}  // namespace simhost::contract
