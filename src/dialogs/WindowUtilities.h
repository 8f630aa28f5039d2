// The host's top-level windows. Texts are in the ANSI code page, as Windows' narrow calls give them.
// Thread: main.
#pragma once

#include <windows.h>

namespace CrossPluginUtils {

// Takes the foreground away from its window for a moment and gives it back. Does nothing when no window has it or when
// it changes hands meanwhile.
void BackgroundForegroundApp();

}  // namespace CrossPluginUtils

// The first top-level window whose text holds `title`, case-sensitive; with a `text` only if a child window of that
// very window holds `text`. Null when there is none. `text` may be null.
HWND FindWindowByText(const char* title, const char* text);

// Presses Enter in the window that FindWindowByText finds; false when there is none. Nothing calls it; it is kept as a
// ready operation.
bool ForciblyCloseWindow(const char* title, const char* text);
