#include "support/Foreground.h"

#include <windows.h>

bool SwitchForegroundAwayAndBack(ForegroundMatch match) {
    const HWND first = GetForegroundWindow();
    const HWND second = GetForegroundWindow();
    bool matches = first == second;
    if (match == ForegroundMatch::kSameWindowOrParent) {
        const HWND parent = GetParent(second);
        matches = matches || parent == first;
    }
    if (!matches || second == nullptr) {
        return false;
    }
    // A switch that Windows refuses costs nothing but the refresh.
    SetForegroundWindow(GetDesktopWindow());
    SetForegroundWindow(second);
    return true;
}
