// Files of somebody that hold something else for the time of a run. What they held before lies in a journal until it is
// back: when this process is killed, or a file is locked, the next run puts it back from there.
//
// Thread: main.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace simhost {

struct FileContents {
    std::filesystem::path file;
    std::optional<std::string> contents;  // nothing: there is no such file
};

class ReplacedFiles {
  public:
    // Throws std::runtime_error, having changed nothing, when a file cannot be read, written or removed.
    ReplacedFiles(std::filesystem::path journal, const std::vector<FileContents>& during);
    // Says on standard error what cannot be put back now, and where it lies.
    ~ReplacedFiles();
    ReplacedFiles(const ReplacedFiles&) = delete;
    ReplacedFiles& operator=(const ReplacedFiles&) = delete;

    // What an earlier run has left in the journal, which may not be there. Throws std::runtime_error, and keeps the
    // journal, when it cannot be put back.
    static void PutBack(const std::filesystem::path& journal);

  private:
    std::filesystem::path mJournal;
};

}  // namespace simhost
