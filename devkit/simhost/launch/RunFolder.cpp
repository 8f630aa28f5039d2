#include "simhost/launch/RunFolder.h"

#include <windows.h>

#include <fstream>
#include <stdexcept>

#include "doubles/common/Text.h"

#ifndef QUORVEL_VERSION
#error "the version number comes from the build"
#endif

namespace simhost {

namespace {

void Copy(const std::filesystem::path& from, const std::filesystem::path& to) {
    std::filesystem::create_directories(to.parent_path());
    if (CopyFileW(from.c_str(), to.c_str(), FALSE) == 0) {
        throw std::runtime_error("cannot copy " + Utf8(from.wstring()) + " to " + Utf8(to.wstring()) + " (error " +
                                 std::to_string(GetLastError()) + ")");
    }
}

// Programs are large and nobody writes to them, so they are linked where the file system can. Libraries are not: two
// links of one file would be one module to the loader.
void LinkOrCopy(const std::filesystem::path& from, const std::filesystem::path& to) {
    std::filesystem::create_directories(to.parent_path());
    if (CreateHardLinkW(to.c_str(), from.c_str(), nullptr) == 0) {
        Copy(from, to);
    }
}

void SetModificationTime(const std::filesystem::path& path, std::int64_t seconds) {
    constexpr std::int64_t kUnixEpoch = 116444736000000000;
    const std::int64_t ticks = kUnixEpoch + seconds * 10'000'000;
    const FILETIME time{static_cast<DWORD>(ticks & 0xFFFFFFFF), static_cast<DWORD>(ticks >> 32)};
    const HANDLE file =
        CreateFileW(path.c_str(), FILE_WRITE_ATTRIBUTES, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE || SetFileTime(file, nullptr, nullptr, &time) == 0) {
        throw std::runtime_error("cannot set the time of " + Utf8(path.wstring()));
    }
    CloseHandle(file);
}

}  // namespace

RunFolder::RunFolder(std::filesystem::path root, const std::filesystem::path& pluginFileName)
    : mRoot(std::move(root)), mPluginName(pluginFileName.filename()) {}

std::filesystem::path RunFolder::At(const std::string& path) const {
    return (mRoot / std::filesystem::path(Wide(path))).make_preferred();
}

Placeholders RunFolder::PlaceholdersForScenarios() const {
    return {{"work", Utf8(mRoot.wstring())}, {"plugin", Utf8(Plugin().wstring())}, {"version", QUORVEL_VERSION}};
}

void RunFolder::LayOut(const Scenario& scenario, const std::filesystem::path& plugin, const std::filesystem::path& kit,
                       const std::filesystem::path& pluginCore) const {
    std::filesystem::remove_all(mRoot);
    LinkOrCopy(kit / L"simhost.exe", Program());
    LinkOrCopy(plugin, Plugin());
    for (const CopyToMake& copy : scenario.copies) {
        const bool isReplaced = !pluginCore.empty() && copy.what == "PluginCoreX64.dll";
        Copy(isReplaced ? pluginCore : kit / Wide(copy.what), At(copy.to));
    }
    for (const FileToMake& file : scenario.files) {
        WriteFile(file);
    }
    WriteAnswers(scenario.answers);
    std::ofstream(BusAnswers(), std::ios::binary | std::ios::trunc) << scenario.busAnswers.dump();
}

void RunFolder::WriteFile(const FileToMake& file) const {
    const std::filesystem::path path = At(file.path);
    std::filesystem::create_directories(path.parent_path());
    if (file.from.empty()) {
        std::ofstream(path, std::ios::binary | std::ios::trunc) << file.text;
    } else {
        Copy(Wide(file.from), path);
    }
    if (file.modified) {
        SetModificationTime(path, *file.modified);
    }
}

void RunFolder::Move(const FileToMove& move) const {
    std::filesystem::create_directories(At(move.to).parent_path());
    std::filesystem::rename(At(move.from), At(move.to));
}

void RunFolder::WriteAnswers(const nlohmann::ordered_json& answers) const {
    std::ofstream(Answers(), std::ios::binary | std::ios::trunc) << answers.dump();
}

}  // namespace simhost
