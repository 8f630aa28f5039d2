#include "simhost/checks/LoadedLibraries.h"

#include <windows.h>
#define PSAPI_VERSION 2
#include <psapi.h>

#include <vector>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

constexpr std::wstring_view kEndOfName = L"PluginCoreX64.dll";

std::wstring PathOf(HMODULE module) {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

}  // namespace

std::string PluginCoreInProcess() {
    std::vector<HMODULE> modules(1024);
    DWORD bytes = 0;
    if (K32EnumProcessModules(GetCurrentProcess(), modules.data(), static_cast<DWORD>(modules.size() * sizeof(HMODULE)),
                              &bytes) == 0) {
        return {};
    }
    modules.resize(bytes / sizeof(HMODULE));
    for (const HMODULE module : modules) {
        const std::wstring path = PathOf(module);
        if (path.size() >= kEndOfName.size() &&
            path.compare(path.size() - kEndOfName.size(), kEndOfName.size(), kEndOfName) == 0) {
            return Utf8(std::wstring_view(path));
        }
    }
    return {};
}

}  // namespace simhost
