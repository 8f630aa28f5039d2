#include "simhost/launch/TemporaryFolder.h"

#include <windows.h>

#include <cstdio>
#include <exception>

#include "simhost/launch/Leftovers.h"
#include "simhost/launch/OwnFolder.h"

namespace simhost {

// The desktop is taken first: whoever has it removes what lies there without it.
TemporaryFolder::TemporaryFolder(const std::wstring& purpose)
    : mFolder((BeginRuns(true), FolderOfRuns()) / (purpose + L"-" + std::to_wstring(GetCurrentProcessId()))) {
    mFolder.make_preferred();
    TakeFolder(mFolder);
}

TemporaryFolder::~TemporaryFolder() {
    try {
        RemoveOwnFolder(mFolder);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "simhost: %s\n", error.what());
    }
}

}  // namespace simhost
