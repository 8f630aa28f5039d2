#include "simhost/launch/OwnFolder.h"

#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

#include "doubles/common/Text.h"
#include "simhost/launch/FileChanges.h"
#include "simhost/launch/RemoveTree.h"

namespace simhost {

namespace {

constexpr const wchar_t* kMark = L"made-by-simhost.txt";

bool IsMarked(const std::filesystem::path& folder) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(folder / kMark, ignored) && !IsLink(folder / kMark);
}

void Mark(const std::filesystem::path& folder) {
    std::ofstream mark(folder / kMark, std::ios::binary | std::ios::trunc);
    mark << "A run of simhost took place in this folder. The next run empties it, with everything that lies in it.\n";
    if (!mark.flush()) {
        throw std::runtime_error("cannot write into the folder " + Utf8(folder.wstring()));
    }
}

}  // namespace

void CheckIsOwnOrNew(const std::filesystem::path& folder) {
    std::error_code error;
    if (!std::filesystem::exists(folder, error) && !error) {
        return;
    }
    if (!std::filesystem::is_directory(folder, error)) {
        throw std::runtime_error(Utf8(folder.wstring()) + " is no folder");
    }
    if (!IsMarked(folder) && !std::filesystem::is_empty(folder, error)) {
        throw std::runtime_error("the folder " + Utf8(folder.wstring()) +
                                 " holds something that no run of simhost has made; name a new or an empty folder");
    }
}

void ShareFolder(const std::filesystem::path& folder) {
    CheckIsOwnOrNew(folder);
    MakeFolder(folder);
    Mark(folder);
}

void TakeFolder(const std::filesystem::path& folder) {
    ShareFolder(folder);
    try {
        RemoveContents(folder);
    } catch (...) {
        // It is ours however far this got.
        Mark(folder);
        throw;
    }
    Mark(folder);
}

void RemoveOwnFolder(const std::filesystem::path& folder) {
    if (IsMarked(folder)) {
        RemoveTree(folder);
    }
}

}  // namespace simhost
