#include "FileVersion.h"

#include <windows.h>
// After windows.h, which it needs.
#include <winver.h>

#include <array>
#include <vector>

#include "support/FourPartVersion.h"

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
    const std::array<unsigned, 4> parts = PartsOfVersion(*static_cast<const VS_FIXEDFILEINFO*>(value));
    return std::to_wstring(parts[0]) + L'.' + std::to_wstring(parts[1]) + L'.' + std::to_wstring(parts[2]) + L'.' +
           std::to_wstring(parts[3]);
}
