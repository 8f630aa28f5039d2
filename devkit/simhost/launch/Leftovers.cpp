#include "simhost/launch/Leftovers.h"

#include <system_error>
#include <vector>

#include "simhost/launch/DesktopLock.h"
#include "simhost/launch/LaunchInfoFiles.h"
#include "simhost/launch/OwnFolder.h"

namespace simhost {

std::filesystem::path FolderOfRuns() { return std::filesystem::temp_directory_path() / L"simhost-runs"; }

void BeginRuns(bool waits) {
    if (!TakeDesktop(waits)) {
        return;
    }
    LaunchInfoFiles::PutBackLeftovers();
    std::error_code ignored;
    std::vector<std::filesystem::path> folders;
    for (const auto& entry : std::filesystem::directory_iterator(FolderOfRuns(), ignored)) {
        folders.push_back(entry.path());
    }
    for (const std::filesystem::path& folder : folders) {
        RemoveOwnFolder(folder);
    }
}

}  // namespace simhost
