// What a window of any thread shows, also when that thread is busy.
//
// Thread: any.
#pragma once

#include <windows.h>

#include <string>

namespace simhost {

// Cut to 2047 characters; empty when the window's thread does not answer within that time.
std::string TextOfWindow(HWND window, UINT patienceMilliseconds);
std::wstring ClassOfWindow(HWND window);

}  // namespace simhost
