#include "Installations.h"

#include <windows.h>

#include <utility>

namespace {

constexpr const wchar_t* kKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\QuorvelTypeAgentAI20";

// Empty when there is none.
std::wstring Value(HKEY root, const wchar_t* name) {
    constexpr DWORD kFlags = RRF_RT_REG_SZ | RRF_SUBKEY_WOW6464KEY;
    DWORD size = 0;
    if (RegGetValueW(root, kKey, name, kFlags, nullptr, nullptr, &size) != ERROR_SUCCESS) {
        return {};
    }
    std::wstring value(size / sizeof(wchar_t), L'\0');
    if (RegGetValueW(root, kKey, name, kFlags, nullptr, value.data(), &size) != ERROR_SUCCESS) {
        return {};
    }
    // With its zero.
    return value.substr(0, value.find(L'\0'));
}

void AddInstallation(HKEY root, const wchar_t* scope, std::vector<Installation>& out) {
    Installation installation{scope, Value(root, L"DisplayVersion"), Value(root, L"PluginFolder")};
    if (!installation.version.empty() || !installation.pluginFolder.empty()) {
        out.push_back(std::move(installation));
    }
}

}  // namespace

std::vector<Installation> FindInstallations() {
    std::vector<Installation> installations;
    AddInstallation(HKEY_LOCAL_MACHINE, L"for all users", installations);
    AddInstallation(HKEY_CURRENT_USER, L"for this user", installations);
    return installations;
}
