#include "ProcessFaults.h"

#include <windows.h>

#include <cstdint>

namespace {

// Hides every dialog that is shown.
LRESULT CALLBACK HideDialogs(int code, WPARAM wParam, LPARAM lParam) {
    const auto& message = *reinterpret_cast<const CWPSTRUCT*>(lParam);
    if (code >= 0 && message.message == WM_SHOWWINDOW && message.wParam != 0) {
        PostMessageW(message.hwnd, WM_SHOWWINDOW, 0, 0);
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void* PluginCoreEntry(const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(LoadLibraryW(L"PluginCoreX64.dll"), name));
}

}  // namespace

void LeaveHook() { SetWindowsHookExW(WH_CALLWNDPROC, &HideDialogs, nullptr, GetCurrentThreadId()); }

void ShowBox() { MessageBoxW(nullptr, L"Nobody asked for it.", L"Surprise", MB_OK); }

void CallPluginCore() { reinterpret_cast<std::int32_t (*)()>(PluginCoreEntry("IdleEvent"))(); }

void CallPluginCoreUnseen() {
    using GetProcAddressFunction = FARPROC(WINAPI*)(HMODULE, LPCSTR);
    const auto find = reinterpret_cast<GetProcAddressFunction>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "GetProcAddress")));
    const FARPROC entry = find(LoadLibraryW(L"PluginCoreX64.dll"), "IdleEvent");
    reinterpret_cast<std::int32_t (*)()>(reinterpret_cast<void*>(entry))();
}

void AskWhetherEnabled() {
    std::uint8_t enabled = 0;
    const auto entry =
        reinterpret_cast<std::int32_t (*)(std::uint8_t, std::uint8_t*)>(PluginCoreEntry("PluginIsEnabled"));
    entry(1, &enabled);
}
