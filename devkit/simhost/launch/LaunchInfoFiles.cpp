#include "simhost/launch/LaunchInfoFiles.h"

#include <shlobj.h>
#include <windows.h>

#include <fstream>
#include <iterator>
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

std::optional<std::string> ContentsOf(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        return std::nullopt;
    }
    return std::string(std::istreambuf_iterator<char>(stream), {});
}

void SetContents(const std::filesystem::path& file, const std::optional<std::string>& contents) {
    std::error_code ignored;
    if (!contents) {
        std::filesystem::remove(file, ignored);
        // Only when nobody else has anything in it.
        std::filesystem::remove(file.parent_path(), ignored);
        return;
    }
    std::filesystem::create_directories(file.parent_path(), ignored);
    std::ofstream(file, std::ios::binary | std::ios::trunc) << *contents;
}

}  // namespace

LaunchInfoFiles::LaunchInfoFiles(const LaunchInfo& info) {
    Put(CSIDL_LOCAL_APPDATA, info.local);
    Put(CSIDL_COMMON_APPDATA, info.common);
}

void LaunchInfoFiles::Put(int folder, const std::optional<std::string>& contents) {
    const std::filesystem::path file = FileIn(folder);
    mPlaces.push_back({file, ContentsOf(file)});
    SetContents(file, contents);
}

LaunchInfoFiles::~LaunchInfoFiles() {
    for (const Place& place : mPlaces) {
        SetContents(place.file, place.before);
    }
}

}  // namespace simhost
