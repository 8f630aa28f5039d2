#include "simhost/launch/RunFolder.h"

#include <windows.h>

#include <stdexcept>

#include "doubles/common/Text.h"
#include "simhost/launch/FileChanges.h"
#include "simhost/launch/OwnFolder.h"
#include "simhost/launch/RemoveTree.h"
#include "simhost/report/WholeFile.h"
#include "simhost/scenario/PathsOfRun.h"

#ifndef QUORVEL_VERSION
#error "the version number comes from the build"
#endif

namespace simhost {

namespace {

// Where a file is going to be written: its folder is there and is no link to elsewhere, and it is none itself. A former
// file is removed and not written over, because it may have another name somewhere else.
void MakeWay(const std::filesystem::path& root, const std::filesystem::path& file) {
    if (const std::string why = WhyNotInRun(Utf8(file.wstring()), Utf8(root.wstring())); !why.empty()) {
        throw std::runtime_error(Utf8(file.wstring()) + " is no file in the folder of the run: " + why);
    }
    for (std::filesystem::path folder = file.parent_path(); folder != root && folder.has_relative_path();
         folder = folder.parent_path()) {
        if (IsLink(folder)) {
            throw std::runtime_error(Utf8(folder.wstring()) + " leads out of the folder of the run");
        }
    }
    MakeFolder(file.parent_path());
    RemoveFile(file);
}

void Copy(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (CopyFileW(from.c_str(), to.c_str(), FALSE) == 0) {
        throw std::runtime_error("cannot copy " + Utf8(from.wstring()) + " to " + Utf8(to.wstring()) + " (error " +
                                 std::to_string(GetLastError()) + ")");
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
    return {{"work", Utf8(mRoot.wstring())},
            {"plugin", Utf8(Plugin().wstring())},
            {"version", QUORVEL_VERSION},
            {"surrogate", kSurrogate}};
}

void RunFolder::LayOut(const Scenario& scenario, const std::filesystem::path& plugin, const std::filesystem::path& kit,
                       const std::filesystem::path& pluginCore) const {
    TakeFolder(mRoot);
    MakeWay(mRoot, Program());
    // No link: a file that has a running program's contents under another name could not be removed.
    Copy(kit / L"simhost.exe", Program());
    MakeWay(mRoot, Plugin());
    Copy(plugin, Plugin());
    LayOutFiles(scenario, kit, pluginCore);
    WriteAnswers(scenario.answers);
    WriteWholeFile(BusAnswers(), scenario.busAnswers.dump());
}

void RunFolder::LayOutFiles(const Scenario& scenario, const std::filesystem::path& kit,
                            const std::filesystem::path& pluginCore) const {
    for (const CopyToMake& copy : scenario.copies) {
        const bool isReplaced = !pluginCore.empty() && copy.what == kPluginCoreName;
        MakeWay(mRoot, At(copy.to));
        Copy(isReplaced ? pluginCore : kit / Wide(copy.what), At(copy.to));
    }
    for (const FileToMake& file : scenario.files) {
        WriteFile(file);
    }
}

void RunFolder::WriteFile(const FileToMake& file) const {
    const std::filesystem::path path = At(file.path);
    MakeWay(mRoot, path);
    if (file.from.empty()) {
        WriteWholeFile(path, file.text);
    } else {
        Copy(At(file.from), path);
    }
    if (file.modified) {
        SetModificationTime(path, *file.modified);
    }
}

void RunFolder::Move(const FileToMove& move) const {
    MakeWay(mRoot, At(move.to));
    MoveFileTo(At(move.from), At(move.to));
}

void RunFolder::WriteAnswers(const nlohmann::ordered_json& answers) const { WriteWholeFile(Answers(), answers.dump()); }

}  // namespace simhost
