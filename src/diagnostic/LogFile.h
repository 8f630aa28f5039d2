// The file that the log of one run goes to. Each run has files of its own, named by the time of its beginning and its
// process: hosts that run at the same time do not touch each other's. A file that has grown to its limit is followed by
// another part; of all runs together the newest files are kept.
//
// Nothing here fails aloud: without a folder or room on the disk there is no log, and the plug-in works as ever. Takes
// no memory from the heap and calls nothing of Windows but what may be called while libraries are loaded. Thread: one
// at a time.
#pragma once

#include <windows.h>

#include <cstdint>
#include <span>
#include <string_view>

struct LogFileLimits {
    std::uint64_t partSize = std::uint64_t{4} * 1024 * 1024;  // bytes; a line is never torn apart
    int keptFiles = 10;                                       // the newest, this one included
};

class LogFile {
  public:
    // Opens the first part in `folder` (without a separator at its end).
    void Open(std::wstring_view folder, const SYSTEMTIME& begin, DWORD process, LogFileLimits limits = {}) noexcept;
    // Closes the part and opens the next one.
    void OpenNextPart() noexcept;
    void Close() noexcept;

    // 1 for the first.
    int Part() const noexcept { return mPart; }
    // Whether so many bytes more fit into this part; an empty one takes everything.
    bool HasRoomFor(std::size_t size) const noexcept;

    void Append(std::string_view line) noexcept;
    // Writes a last line which the next call of this function replaces, and which stays where it is when something is
    // appended.
    void AppendOrReplace(std::string_view line) noexcept;

  private:
    void OpenPart() noexcept;
    void Write(std::string_view bytes) noexcept;
    void DeleteOldFiles() const noexcept;

    static constexpr std::size_t kPathSize = 1024;

    HANDLE mFile = INVALID_HANDLE_VALUE;  // no owner object: it is left to Windows when the process ends
    LogFileLimits mLimits;
    wchar_t mFolder[kPathSize] = {};
    wchar_t mRun[64] = {};  // what the names of the parts begin with
    int mPart = 0;
    std::uint64_t mSize = 0;              // of the part
    std::uint64_t mReplaceable = 0;       // where the last line begins
    bool mLastLineIsReplaceable = false;  // and whether it may be written over
};

// Makes "Quorvel\TypeAgent\Logs" in the user's local application data, or in the temporary folder when that has no
// name, and writes its path there. The length; 0 when there is no such folder.
std::size_t MakeLogFolder(std::span<wchar_t> path) noexcept;
