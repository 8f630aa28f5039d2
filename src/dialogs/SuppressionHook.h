// The Windows hook that dismisses the host's missing-font dialogs. It watches the messages of the thread that installed
// it and acts only while it is active: a dialog box whose title holds one of the words is remembered when it is
// created, and its OK button (or Enter) is pressed when it is first shown.
// Thread: main.
#pragma once

#include <windows.h>

// Installs the hook for the calling thread unless it is installed. When Windows refuses, nothing is hooked.
void InstallSuppressionHook();
// Removes the hook if it is installed.
void RemoveSuppressionHook();

// Whether the installed hook acts. False at load.
void SetSuppressionActive(bool active);
// Nothing calls it; it belongs to the switch.
bool IsSuppressionActive();

// The hook procedure (WH_CALLWNDPROC). Never swallows a message; no exception leaves it.
LRESULT CALLBACK SuppressionHookProc(int code, WPARAM wParam, LPARAM lParam) noexcept;
