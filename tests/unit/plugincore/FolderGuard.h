// Sets a folder that belongs to the whole system aside for the length of a test, so that the test finds none there and
// may make its own. What was there comes back in any case: at the end of the test, or when the next guard of the same
// folder finds that a test was ended before it.
#pragma once

#include <filesystem>

class FolderGuard {
  public:
    explicit FolderGuard(const std::filesystem::path& folder) : mFolder(folder), mAside(folder) {
        mAside += ".set-aside-by-tests";
        if (std::filesystem::exists(mAside)) {
            std::filesystem::remove_all(mFolder);
            return;
        }
        if (std::filesystem::exists(mFolder)) {
            std::filesystem::rename(mFolder, mAside);
        } else {
            // Empty: there was none.
            std::filesystem::create_directories(mAside);
        }
    }
    FolderGuard(const FolderGuard&) = delete;
    FolderGuard& operator=(const FolderGuard&) = delete;
    ~FolderGuard() {
        std::error_code ignored;
        std::filesystem::remove_all(mFolder, ignored);
        if (std::filesystem::is_empty(mAside, ignored)) {
            std::filesystem::remove(mAside, ignored);
        } else {
            std::filesystem::rename(mAside, mFolder, ignored);
        }
    }

  private:
    std::filesystem::path mFolder;
    std::filesystem::path mAside;
};
