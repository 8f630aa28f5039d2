#include "simhost/checks/ImportWatch.h"

#include <utility>

#include "doubles/common/ImportPatch.h"
#include "simhost/checks/HostStateWatch.h"

namespace simhost {

namespace {

// There is one plug-in in a process at a time.
std::vector<std::uint32_t> sBoxStyles;
std::int64_t sHooksInPlace = 0;
std::vector<MessagingLoad> sMessagingLoads;
std::filesystem::path sMessagingLibrary;

int WINAPI WatchedMessageBoxW(HWND owner, LPCWSTR text, LPCWSTR caption, UINT style) {
    sBoxStyles.push_back(style);
    return MessageBoxW(owner, text, caption, style);
}

int WINAPI WatchedMessageBoxA(HWND owner, LPCSTR text, LPCSTR caption, UINT style) {
    sBoxStyles.push_back(style);
    return MessageBoxA(owner, text, caption, style);
}

HHOOK WINAPI WatchedSetWindowsHookExW(int type, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
    const HHOOK hook = SetWindowsHookExW(type, procedure, module, thread);
    sHooksInPlace += hook != nullptr ? 1 : 0;
    return hook;
}

BOOL WINAPI WatchedUnhookWindowsHookEx(HHOOK hook) {
    const BOOL done = UnhookWindowsHookEx(hook);
    sHooksInPlace -= done != 0 ? 1 : 0;
    return done;
}

std::filesystem::path FileOf(HMODULE module) {
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(module, path, MAX_PATH);
    return path;
}

bool IsMessagingLibrary(const std::filesystem::path& file) {
    return file.filename().wstring().starts_with(L"PlugPlug");
}

HMODULE WINAPI WatchedLoadLibraryW(LPCWSTR file) {
    const OthersTurn turn;
    const HMODULE module = LoadLibraryW(file);
    const DWORD error = GetLastError();
    if (IsMessagingLibrary(file)) {
        sMessagingLibrary = module != nullptr ? FileOf(module) : sMessagingLibrary;
        sMessagingLoads.push_back({module != nullptr ? sMessagingLibrary : file, module != nullptr});
    }
    SetLastError(error);
    return module;
}

}  // namespace

void WatchImports(HMODULE module) {
    sBoxStyles.clear();
    sHooksInPlace = 0;
    sMessagingLoads.clear();
    sMessagingLibrary.clear();
    // A plug-in need not import all of them.
    ReplaceImport(module, "MessageBoxW", AsReplacement(WatchedMessageBoxW));
    ReplaceImport(module, "MessageBoxA", AsReplacement(WatchedMessageBoxA));
    ReplaceImport(module, "SetWindowsHookExW", AsReplacement(WatchedSetWindowsHookExW));
    ReplaceImport(module, "UnhookWindowsHookEx", AsReplacement(WatchedUnhookWindowsHookEx));
    ReplaceImport(module, "LoadLibraryW", AsReplacement(WatchedLoadLibraryW));
}

std::vector<std::uint32_t> TakeBoxStyles() { return std::exchange(sBoxStyles, {}); }

std::vector<MessagingLoad> TakeMessagingLoads() { return std::exchange(sMessagingLoads, {}); }

std::filesystem::path MessagingLibraryOfPlugin() { return sMessagingLibrary; }

std::int64_t HooksInPlace() { return sHooksInPlace; }

}  // namespace simhost
