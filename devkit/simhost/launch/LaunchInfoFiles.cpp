#include "simhost/launch/LaunchInfoFiles.h"

#include <shlobj.h>
#include <windows.h>

#include <stdexcept>

namespace simhost {

namespace {

std::filesystem::path FileIn(int folder) {
    wchar_t path[MAX_PATH] = L"";
    if (SHGetFolderPathW(nullptr, folder, nullptr, SHGFP_TYPE_CURRENT, path) != S_OK) {
        throw std::runtime_error("Windows does not tell the application-data folder");
    }
    return std::filesystem::path(path) / L"Quorvel" / L"com.quorvel.Lumet-LaunchInfo.conf";
}

std::filesystem::path Journal() { return std::filesystem::temp_directory_path() / L"simhost-launch-info.cbor"; }

}  // namespace

LaunchInfoFiles::LaunchInfoFiles(const LaunchInfo& info)
    : mFiles(Journal(), {{FileIn(CSIDL_LOCAL_APPDATA), info.local}, {FileIn(CSIDL_COMMON_APPDATA), info.common}}) {}

void LaunchInfoFiles::PutBackLeftovers() { ReplacedFiles::PutBack(Journal()); }

}  // namespace simhost
