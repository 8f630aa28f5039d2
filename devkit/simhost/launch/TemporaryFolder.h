// A folder for the time of one command, below the folder of all runs and with their mark: when this process is killed,
// the next run clears it away.
#pragma once

#include <filesystem>
#include <string>

namespace simhost {

class TemporaryFolder {
  public:
    // Waits for other runs on this desktop, which may be clearing up. Throws std::runtime_error, Cancelled.
    explicit TemporaryFolder(const std::wstring& purpose);
    // Removes it with all that lies in it.
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::filesystem::path At(const std::wstring& name) const { return mFolder / name; }

  private:
    std::filesystem::path mFolder;
};

}  // namespace simhost
