// One run at a time on a desktop: runs share its windows and its foreground, the launch-info files and the list of
// processes.
#pragma once

namespace simhost {

// Takes the desktop for this process until it ends; false when it was taken before. When another process has it,
// waits, and says so on standard error after a second. Throws std::runtime_error instead of waiting when told not to,
// and Cancelled.
bool TakeDesktop(bool waits);

}  // namespace simhost
