#include "Identity.h"

#include <windows.h>
// After windows.h, which it needs.
#include <lmcons.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "EnvironmentVariable.h"
#include "KnownFolder.h"

namespace {

std::wstring AccountName() {
    std::array<wchar_t, UNLEN + 1> name{};
    auto size = static_cast<DWORD>(name.size());
    return GetUserNameW(name.data(), &size) != FALSE ? std::wstring(name.data()) : std::wstring();
}

// The path itself where there is none.
std::wstring ShortForm(const std::wstring& path) {
    std::wstring form(GetShortPathNameW(path.c_str(), nullptr, 0), L'\0');
    form.resize(GetShortPathNameW(path.c_str(), form.data(), static_cast<DWORD>(form.size())));
    return form.empty() ? path : form;
}

void AddBothForms(const std::wstring& folder, std::vector<std::wstring>& out) {
    if (!folder.empty()) {
        out.push_back(folder);
        out.push_back(ShortForm(folder));
    }
}

std::wstring WithoutSeparatorAtEnd(std::wstring path) {
    while (!path.empty() && (path.back() == L'\\' || path.back() == L'/')) {
        path.pop_back();
    }
    return path;
}

std::wstring LastComponent(const std::wstring& path) { return path.substr(path.find_last_of(L"\\/") + 1); }

// What Windows makes of a name that is no short one: six letters, a tilde and a number. Which number, only the folder
// knows that it lies in.
void AddShortForms(const std::wstring& name, std::vector<std::wstring>& out) {
    constexpr std::size_t kLongestShortName = 8;
    constexpr std::size_t kKept = 6;
    std::wstring kept;
    std::copy_if(name.begin(), name.end(), std::back_inserter(kept),
                 [](wchar_t unit) { return unit != L' ' && unit != L'.'; });
    if ((name.size() <= kLongestShortName && kept.size() == name.size()) || kept.empty()) {
        return;
    }
    kept.resize(std::min(kept.size(), kKept));
    for (wchar_t number = L'1'; number <= L'9'; ++number) {
        out.push_back(kept + L"~" + number);
    }
}

void LongestFirstAndOnce(std::vector<std::wstring>& texts) {
    std::erase(texts, std::wstring());
    std::sort(texts.begin(), texts.end(), [](const std::wstring& one, const std::wstring& other) {
        return one.size() != other.size() ? one.size() > other.size() : one < other;
    });
    texts.erase(std::unique(texts.begin(), texts.end()), texts.end());
}

}  // namespace

Identity CurrentIdentity() {
    Identity identity;
    AddBothForms(KnownFolder(FOLDERID_Profile), identity.profileFolders);
    AddBothForms(EnvironmentVariable(L"USERPROFILE"), identity.profileFolders);
    AddBothForms(KnownFolder(FOLDERID_UserProfiles), identity.allProfiles);
    identity.names = {AccountName(), EnvironmentVariable(L"USERNAME")};
    return Completed(std::move(identity));
}

Identity Completed(Identity identity) {
    for (std::wstring& folder : identity.profileFolders) {
        folder = WithoutSeparatorAtEnd(std::move(folder));
        identity.names.push_back(LastComponent(folder));
    }
    for (std::wstring& folder : identity.allProfiles) {
        folder = WithoutSeparatorAtEnd(std::move(folder));
    }
    std::vector<std::wstring> shortForms;
    for (const std::wstring& name : identity.names) {
        AddShortForms(name, shortForms);
    }
    identity.names.insert(identity.names.end(), shortForms.begin(), shortForms.end());
    LongestFirstAndOnce(identity.profileFolders);
    LongestFirstAndOnce(identity.allProfiles);
    LongestFirstAndOnce(identity.names);
    return identity;
}
