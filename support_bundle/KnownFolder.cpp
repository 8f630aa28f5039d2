#include "KnownFolder.h"

std::filesystem::path KnownFolder(const KNOWNFOLDERID& identifier, DWORD flags) {
    wchar_t* path = nullptr;
    std::filesystem::path folder;
    if (SUCCEEDED(SHGetKnownFolderPath(identifier, flags, nullptr, &path))) {
        folder = path;
    }
    CoTaskMemFree(path);
    return folder;
}
