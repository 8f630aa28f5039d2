#include "plugincore/LibraryLoading.h"

#include <winver.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "support/Log.h"
#include "support/TextConversion.h"

namespace {

constexpr wchar_t kPrivateBuildQuery[] = L"\\StringFileInfo\\040904b0\\PrivateBuild";
constexpr std::size_t kVersionPathSize = 260;
constexpr std::size_t kPrivateBuildBufferSize = 256;  // bytes

bool IsHighSurrogate(wchar_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }

// Copies as much of the text as fits, terminated. Of the text, only so much is read as there is: it may lack its end.
void CopyCut(const wchar_t* text, std::size_t textSizeInUnits, std::size_t sizeInUnits, wchar_t* out) {
    const std::size_t textLength = wcsnlen(text, textSizeInUnits);
    std::size_t length = std::min(textLength, sizeInUnits - 1);
    if (length > 0 && length < textLength && IsHighSurrogate(text[length - 1])) {
        --length;
    }
    std::copy_n(text, length, out);
    out[length] = L'\0';
}

void CopyCut(const std::string& text, std::size_t size, char* out) {
    const std::size_t length = std::min(text.size(), size - 1);
    std::memcpy(out, text.data(), length);
    out[length] = '\0';
}

}  // namespace

HMODULE LoadLibraryWithVersion(const std::string& path, char* versionOut, std::size_t versionOutSize) {
    const HMODULE module = LoadLibraryA(path.c_str());
    if (module == nullptr) {
        const DWORD error = GetLastError();
        LogMessage(kLogNote, "LoadLibraryA('%s') returned error code 0x%08x (%d)", path.c_str(),
                   static_cast<unsigned>(error), static_cast<int>(error));
    } else {
        LogMessage(kLogNote, "SUCCESS: LoadLibraryA('%s') returned 0x%08x", path.c_str(), Low32(module));
    }
    std::array<wchar_t, kPrivateBuildBufferSize / sizeof(wchar_t)> privateBuild{};
    if (GetFileVersionString(path, kPrivateBuildQuery, kPrivateBuildBufferSize, privateBuild.data())) {
        CopyCut(Utf8FromWindowsText(privateBuild.data()), versionOutSize, versionOut);
    }
    return module;
}

bool GetFileVersionString(const std::string& path, const wchar_t* queryPath, std::size_t size, wchar_t* out) {
    const std::string cutPath = path.substr(0, kVersionPathSize - 1);
    DWORD ignored = 0;
    const DWORD blockSize = GetFileVersionInfoSizeA(cutPath.c_str(), &ignored);
    if (blockSize == 0) {
        const DWORD error = GetLastError();
        LogMessage(kLogNote, "GetFileVersionInfoA('%s', ...) returned error code 0x%08x (%d)", cutPath.c_str(),
                   static_cast<unsigned>(error), static_cast<int>(error));
        return false;
    }
    std::vector<char> block(blockSize);
    void* text = nullptr;
    UINT length = 0;
    if (GetFileVersionInfoA(cutPath.c_str(), 0, blockSize, block.data()) == 0 ||
        VerQueryValueW(block.data(), queryPath, &text, &length) == 0 || text == nullptr || length == 0) {
        return false;
    }
    CopyCut(static_cast<const wchar_t*>(text), length, size / sizeof(wchar_t), out);
    return true;
}

FARPROC GetProcAddressLogged(HMODULE module, const char* name) {
    if (module == nullptr) {
        return nullptr;
    }
    const FARPROC address = GetProcAddress(module, name);
    LogMessage(kLogNote, "GetProcAddress(0x%08x, '%s') returned 0x%08x", Low32(module), name,
               Low32(reinterpret_cast<const void*>(address)));
    return address;
}
