// The application-data folders that the code under test is told, in place of Windows' own.
#pragma once

#include <windows.h>
// After windows.h, which it needs.
#include <shlobj.h>

#include <cwchar>
#include <optional>
#include <string>
#include <vector>

#include "doubles/common/ImportPatch.h"

class ShellFolders {
  public:
    // Nothing: the folder cannot be obtained.
    ShellFolders(std::optional<std::wstring> local, std::optional<std::wstring> common) {
        Local() = std::move(local);
        Common() = std::move(common);
        Questions().clear();
    }

    // The identifiers of the folders that were asked for, in order. A question that is not the expected one counts as
    // 0.
    static std::vector<int>& Questions() {
        static std::vector<int> questions;
        return questions;
    }

  private:
    static std::optional<std::wstring>& Local() {
        static std::optional<std::wstring> folder;
        return folder;
    }
    static std::optional<std::wstring>& Common() {
        static std::optional<std::wstring> folder;
        return folder;
    }

    static BOOL WINAPI Answer(HWND owner, LPWSTR path, int identifier, BOOL create) {
        Questions().push_back(owner == nullptr && create == FALSE ? identifier : 0);
        const std::optional<std::wstring>& folder = identifier == CSIDL_LOCAL_APPDATA ? Local() : Common();
        if (!folder) {
            // What a failing call leaves in the buffer is not to be read.
            std::wcscpy(path, L"nonsense");
            return FALSE;
        }
        std::wcscpy(path, folder->c_str());
        return TRUE;
    }

    ImportPatch mPatch{"SHGetSpecialFolderPathW", AsReplacement(Answer)};
};
