// ai::FilePath, the host's file path object: one pointer to the host's implementation, null for the empty path. All
// operations go to the host's file path suite.
// Thread: main.
#pragma once

#include <string>

#include "host/HostTypes.h"
#include "host/UnicodeString.h"

namespace ai {

// The object as it stands in host records and parameters. `impl` is never dereferenced.
struct FilePathData {
    void* impl;
};

// The path's name alone, as UTF-8; empty for an empty path, and without asking the host for an object without content.
// Throws ai::Error when the host refuses.
std::string FileNameOf(const FilePathData& path);
// The whole path, the same way.
std::string FullPathOf(const FilePathData& path);

// Owns what the host stores behind `impl`.
class FilePath {
  public:
    // Costs no host call.
    FilePath() noexcept = default;
    // A second path of the same text, made by the host. Throws ai::Error.
    FilePath(const FilePath& other);
    FilePath& operator=(const FilePath&) = delete;
    // Gives the path back to the host when there is one.
    ~FilePath();

    // True when the host says that it names nothing.
    bool IsEmpty() const;

    // For host calls that take or fill the object.
    FilePathData& Data() noexcept { return mData; }
    const FilePathData& Data() const noexcept { return mData; }

  private:
    FilePathData mData{nullptr};
};

}  // namespace ai
