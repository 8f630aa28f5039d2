#include "simhost/launch/TemporaryFolder.h"

#include <windows.h>

#include <exception>

#include "simhost/launch/Leftovers.h"
#include "simhost/launch/OwnFolder.h"

namespace simhost {

// The desktop is taken first: whoever has it removes what lies there without it.
TemporaryFolder::TemporaryFolder(const std::wstring& purpose, bool waits)
    : mFolder((static_cast<void>(BeginRuns(waits)), FolderOfRuns()) /
              (purpose + L"-" + std::to_wstring(GetCurrentProcessId()))) {
    mFolder.make_preferred();
    TakeFolder(mFolder);
}

TemporaryFolder::~TemporaryFolder() {
    try {
        RemoveOwnFolder(mFolder);
    } catch (const std::exception&) {
        // A file in it is still open, in a library that stays until the process ends: the next run clears it away.
    }
}

}  // namespace simhost
