#include "simhost/launch/RemoveTree.h"

#include <windows.h>

#include <stdexcept>
#include <string>
#include <string_view>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

// A program that has just ended, or somebody who scans new files, may hold one for a moment.
constexpr int kAttempts = 40;
constexpr DWORD kPauseMilliseconds = 50;

void RemoveOne(const std::filesystem::path& path, bool isFolder) {
    const auto remove = [&] { return (isFolder ? RemoveDirectoryW(path.c_str()) : DeleteFileW(path.c_str())) != 0; };
    for (int i = 0; !remove(); ++i) {
        const DWORD error = GetLastError();
        if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) {
            return;
        }
        if (i == kAttempts) {
            throw std::runtime_error("cannot remove " + Utf8(path.wstring()) + " (error " + std::to_string(error) +
                                     ")");
        }
        SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
        Sleep(kPauseMilliseconds);
    }
}

void RemoveEntry(const std::filesystem::path& path, DWORD attributes) {
    const bool isFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    if (isFolder && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) {
        RemoveContents(path);
    }
    RemoveOne(path, isFolder);
}

}  // namespace

void RemoveContents(const std::filesystem::path& folder) {
    WIN32_FIND_DATAW entry{};
    const HANDLE search = FindFirstFileW((folder / L"*").c_str(), &entry);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    // Not std::filesystem, which follows the links of Windows.
    try {
        do {
            const std::wstring_view name = entry.cFileName;
            if (name != L"." && name != L"..") {
                RemoveEntry(folder / name, entry.dwFileAttributes);
            }
        } while (FindNextFileW(search, &entry) != 0);
    } catch (...) {
        FindClose(search);
        throw;
    }
    FindClose(search);
}

void RemoveTree(const std::filesystem::path& folder) {
    const DWORD attributes = GetFileAttributesW(folder.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES) {
        RemoveEntry(folder, attributes);
    }
}

bool IsLink(const std::filesystem::path& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
}

}  // namespace simhost
