#include "support/Foreground.h"

#include <windows.h>

bool SwitchForegroundAwayAndBack(ForegroundMatch match) {
    const HWND first = GetForegroundWindow();
    const HWND second = GetForegroundWindow();
    const bool matches =
        first == second || (match == ForegroundMatch::kSameWindowOrParent && GetParent(second) == first);
    if (!matches || second == nullptr) {
        return false;
    }
    // A switch that Windows refuses costs nothing but the refresh.
    SetForegroundWindow(GetDesktopWindow());
    SetForegroundWindow(second);
    return true;
}
