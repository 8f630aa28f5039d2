// A folder for the time of one command, below the folder of all runs and with their mark: when this process is killed,
// the next run clears it away.
#pragma once

#include <filesystem>
#include <string>

namespace simhost {

class TemporaryFolder {
  public:
    // Other runs on this desktop may be clearing up: waits for them, or throws when there is one. Throws
    // std::runtime_error, Cancelled.
    TemporaryFolder(const std::wstring& purpose, bool waits);
    // Removes it with all that lies in it.
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path At(const std::wstring& name) const { return mFolder / name; }

  private:
    std::filesystem::path mFolder;
};

}  // namespace simhost
