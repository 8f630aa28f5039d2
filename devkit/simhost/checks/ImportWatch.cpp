#include "simhost/checks/ImportWatch.h"

#include <cstring>
#include <utility>

namespace simhost {

namespace {

// There is one plug-in per process.
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
    const HMODULE module = LoadLibraryW(file);
    const DWORD error = GetLastError();
    if (IsMessagingLibrary(file)) {
        sMessagingLibrary = module != nullptr ? FileOf(module) : sMessagingLibrary;
        sMessagingLoads.push_back({module != nullptr ? sMessagingLibrary : file, module != nullptr});
    }
    SetLastError(error);
    return module;
}

template <class Function>
void* Address(Function function) {
    return reinterpret_cast<void*>(function);
}

void* WatchedInPlaceOf(const char* name) {
    const std::pair<const char*, void*> watched[] = {
        {"MessageBoxW", Address(&WatchedMessageBoxW)},
        {"MessageBoxA", Address(&WatchedMessageBoxA)},
        {"SetWindowsHookExW", Address(&WatchedSetWindowsHookExW)},
        {"UnhookWindowsHookEx", Address(&WatchedUnhookWindowsHookEx)},
        {"LoadLibraryW", Address(&WatchedLoadLibraryW)},
    };
    for (const auto& [watchedName, function] : watched) {
        if (std::strcmp(watchedName, name) == 0) {
            return function;
        }
    }
    return nullptr;
}

void Replace(void** slot, void* function) {
    DWORD before = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
    *slot = function;
    VirtualProtect(slot, sizeof *slot, before, &before);
}

// One library's imports: names in one table, addresses in another of the same order.
void WatchLibrary(unsigned char* base, const IMAGE_IMPORT_DESCRIPTOR& library) {
    const auto* name = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + library.OriginalFirstThunk);
    auto* address = reinterpret_cast<void**>(base + library.FirstThunk);
    for (; name->u1.AddressOfData != 0; ++name, ++address) {
        if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) {
            continue;
        }
        const auto* const import = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + name->u1.AddressOfData);
        if (void* const watched = WatchedInPlaceOf(reinterpret_cast<const char*>(import->Name))) {
            Replace(address, watched);
        }
    }
}

}  // namespace

void WatchImports(HMODULE module) {
    auto* const base = reinterpret_cast<unsigned char*>(module);
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* const headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (imports.VirtualAddress == 0) {
        return;
    }
    for (const auto* library = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + imports.VirtualAddress);
         library->Name != 0; ++library) {
        WatchLibrary(base, *library);
    }
}

std::vector<std::uint32_t> TakeBoxStyles() { return std::exchange(sBoxStyles, {}); }

std::vector<MessagingLoad> TakeMessagingLoads() { return std::exchange(sMessagingLoads, {}); }

std::filesystem::path MessagingLibraryOfPlugin() { return sMessagingLibrary; }

std::int64_t HooksInPlace() { return sHooksInPlace; }

}  // namespace simhost
