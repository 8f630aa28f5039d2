#include "FileVersion.h"

#include <windows.h>
// After windows.h, which it needs.
#include <winver.h>

#include <vector>

std::wstring FileVersion(const std::filesystem::path& file) {
    constexpr const wchar_t* kNone = L"without a version";
    DWORD ignored = 0;
    std::vector<char> block(GetFileVersionInfoSizeW(file.c_str(), &ignored));
    void* value = nullptr;
    UINT size = 0;
    if (block.empty() ||
        GetFileVersionInfoW(file.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) == FALSE ||
        VerQueryValueW(block.data(), L"\\", &value, &size) == FALSE || size < sizeof(VS_FIXEDFILEINFO)) {
        return kNone;
    }
    const auto* const version = static_cast<const VS_FIXEDFILEINFO*>(value);
    const auto number = [](WORD part) { return std::to_wstring(part); };
    return number(HIWORD(version->dwFileVersionMS)) + L'.' + number(LOWORD(version->dwFileVersionMS)) + L'.' +
           number(HIWORD(version->dwFileVersionLS)) + L'.' + number(LOWORD(version->dwFileVersionLS));
}
