#include "simhost/launch/FileChanges.h"

#include <stdexcept>
#include <string>
#include <system_error>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

void ThrowIf(const std::error_code& error, const std::string& what) {
    if (error) {
        throw std::runtime_error("cannot " + what + " (error " + std::to_string(error.value()) + ")");
    }
}

std::string Name(const std::filesystem::path& path) { return Utf8(path.wstring()); }

}  // namespace

void MakeFolder(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    ThrowIf(error, "make the folder " + Name(folder));
}

void RemoveFile(const std::filesystem::path& file) {
    std::error_code error;
    std::filesystem::remove(file, error);
    ThrowIf(error, "remove " + Name(file));
}

void MoveFileTo(const std::filesystem::path& from, const std::filesystem::path& to) {
    std::error_code error;
    std::filesystem::rename(from, to, error);
    ThrowIf(error, "move " + Name(from) + " to " + Name(to));
}

}  // namespace simhost
