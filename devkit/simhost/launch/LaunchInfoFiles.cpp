#include "simhost/launch/LaunchInfoFiles.h"

#include <shlobj.h>
#include <windows.h>

#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

using Json = nlohmann::ordered_json;

std::filesystem::path FileIn(int folder) {
    wchar_t path[MAX_PATH] = L"";
    if (SHGetFolderPathW(nullptr, folder, nullptr, SHGFP_TYPE_CURRENT, path) != S_OK) {
        throw std::runtime_error("Windows does not tell the application-data folder");
    }
    return std::filesystem::path(path) / L"Quorvel" / L"com.quorvel.Lumet-LaunchInfo.conf";
}

std::filesystem::path Journal() { return std::filesystem::temp_directory_path() / L"simhost-launch-info.cbor"; }

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
    Keep(CSIDL_LOCAL_APPDATA);
    Keep(CSIDL_COMMON_APPDATA);
    WriteJournal();
    SetContents(mPlaces[0].file, info.local);
    SetContents(mPlaces[1].file, info.common);
}

LaunchInfoFiles::~LaunchInfoFiles() {
    PutBack();
    std::error_code ignored;
    std::filesystem::remove(Journal(), ignored);
}

void LaunchInfoFiles::Keep(int folder) {
    const std::filesystem::path file = FileIn(folder);
    mPlaces.push_back({file, ContentsOf(file)});
}

void LaunchInfoFiles::PutBack() const {
    for (const Place& place : mPlaces) {
        SetContents(place.file, place.before);
    }
}

// In a binary form of JSON, because the contents may be any bytes.
void LaunchInfoFiles::WriteJournal() const {
    Json places = Json::array();
    for (const Place& place : mPlaces) {
        places.push_back(
            {{"file", Utf8(place.file.wstring())}, {"before", place.before ? Json(*place.before) : Json()}});
    }
    const std::vector<std::uint8_t> bytes = Json::to_cbor(places);
    std::ofstream journal(Journal(), std::ios::binary | std::ios::trunc);
    journal.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!journal.flush()) {
        throw std::runtime_error("cannot write " + Utf8(Journal().wstring()));
    }
}

void LaunchInfoFiles::PutBackLeftovers() {
    const std::optional<std::string> journal = ContentsOf(Journal());
    if (!journal) {
        return;
    }
    const Json places = Json::from_cbor(*journal, true, false);
    // A run that was killed while it wrote the journal has changed nothing yet.
    for (const Json& place : places.is_array() ? places : Json::array()) {
        const Json& before = place.at("before");
        SetContents(Wide(place.at("file").get<std::string>()),
                    before.is_null() ? std::nullopt : std::optional(before.get<std::string>()));
    }
    std::filesystem::remove(Journal());
}

}  // namespace simhost
