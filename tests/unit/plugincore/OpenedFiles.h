// Which files the code under test opens for reading, and a folder that stands for the root of the current drive: Wine
// takes a path that begins with a slash for one of the system below it, so the real root cannot be used.
#pragma once

#include <windows.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "doubles/common/ImportPatch.h"

class OpenedFiles {
  public:
    explicit OpenedFiles(const std::filesystem::path& driveRoot = {}) {
        Root() = driveRoot.wstring();
        Paths().clear();
    }

    // In the order of the attempts, successful or not.
    static std::vector<std::wstring>& Paths() {
        static std::vector<std::wstring> paths;
        return paths;
    }

  private:
    using Function = FILE*(__cdecl*)(const wchar_t*, const wchar_t*);

    static std::wstring& Root() {
        static std::wstring root;
        return root;
    }

    static FILE* __cdecl Open(const wchar_t* path, const wchar_t* mode) {
        static const auto original = reinterpret_cast<Function>(
            reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"msvcrt.dll"), "_wfopen")));
        Paths().emplace_back(path);
        const bool isAtRoot = path[0] == L'/' && !Root().empty();
        return original(isAtRoot ? (Root() + path).c_str() : path, mode);
    }

    ImportPatch mPatch{"_wfopen", AsReplacement(Open)};
};
