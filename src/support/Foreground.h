// Taking the foreground away from the host's window for a moment: the host then rebuilds its font lists.
//
// Thread: main.
#pragma once

// Which answers of Windows, asked twice, name a window to switch.
enum class ForegroundMatch {
    kSameWindow,          // the same window both times
    kSameWindowOrParent,  // or the parent of the second one first
};

// Gives the foreground to the desktop and back to the window that had it. Does nothing, and returns false, when no
// window has it or when the two answers do not match.
bool SwitchForegroundAwayAndBack(ForegroundMatch match);
