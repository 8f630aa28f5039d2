#include "plugincore/PluginCoreLocation.h"

#include <sys/stat.h>
#include <sys/types.h>

#include "plugincore/LaunchInfo.h"
#include "plugincore/RunningProcess.h"
#include "support/ResultCodes.h"

namespace {

constexpr const char* kCoreApplicationName = "Lumet";
constexpr const char* kLaunchInfoFolder = "Quorvel";
constexpr const char* kLaunchInfoFile = "com.quorvel.Lumet-LaunchInfo.conf";
constexpr const char* kLaunchInfoKey = "lumet.path";
constexpr const char* kPluginsFolder = "Plug-ins";

// Cuts the text just after its last separator; a text without one is kept whole.
void StripFileName(std::string& path) {
    if (const std::size_t separator = path.find_last_of("/\\"); separator != std::string::npos) {
        path.resize(separator + 1);
    }
}

std::string FindCoreApplicationFolder() {
    std::string directory;
    if (GetPathToRunningProcessExe(kCoreApplicationName, directory) != kNoErr &&
        ReadLaunchInfoValue(kLaunchInfoFolder, kLaunchInfoFile, kLaunchInfoKey, directory) == kNoErr &&
        !directory.empty()) {
        StripFileName(directory);
    }
    return directory;
}

}  // namespace

std::string FindPluginCorePath() {
    std::string directory = FindCoreApplicationFolder();
    if (!directory.empty() && !IsRegularFile(directory + kPluginCoreFileName)) {
        // The last character stands in for the separator, whatever it is: a folder name without one is not mended here.
        const char separator = directory.back();
        directory += kPluginsFolder;
        directory += separator;
    }
    return directory + kPluginCoreFileName;
}

bool IsRegularFile(const std::string& path) {
    struct _stat64i32 status = {};
    return _stat64i32(path.c_str(), &status) == 0 && (status.st_mode & _S_IFMT) == _S_IFREG;
}
