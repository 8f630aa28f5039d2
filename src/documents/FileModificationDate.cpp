#include "documents/FileModificationDate.h"

#include <sys/stat.h>
#include <sys/types.h>
#include <windows.h>

#include <cstring>
#include <memory>
#include <new>
#include <optional>

#include "support/KernelHandle.h"
#include "support/Log.h"
#include "support/WindowsTime.h"

namespace {

// A wide copy of a narrow path, with room for four units a byte.
class WidePath {
  public:
    explicit WidePath(const char* path)
        : mPath(path), mCapacity(4 * std::strlen(path)), mUnits(new (std::nothrow) wchar_t[mCapacity]()) {}

    bool IsAllocated() const noexcept { return mUnits != nullptr; }

    // False when there is no room for the path, which only an empty path brings about.
    bool ConvertFrom(UINT codePage) noexcept {
        if (mCapacity == 0) {
            return false;
        }
        if (MultiByteToWideChar(codePage, 0, mPath, -1, mUnits.get(), static_cast<int>(mCapacity)) == 0) {
            mUnits[0] = L'\0';
        }
        return true;
    }

    const wchar_t* Text() const noexcept { return mUnits.get(); }

  private:
    const char* mPath;
    std::size_t mCapacity;
    std::unique_ptr<wchar_t[]> mUnits;
};

std::optional<std::int64_t> ReadLastWriteTime(const wchar_t* path) {
    const FileHandle file(
        CreateFileW(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file || file.Get() == nullptr) {
        return std::nullopt;
    }
    FILETIME lastWrite{};
    if (GetFileTime(file.Get(), nullptr, nullptr, &lastWrite) == 0) {
        return std::nullopt;
    }
    return SecondsSince1970(lastWrite);
}

std::optional<std::int64_t> ReadLastWriteTimeOfNarrowPath(const char* path) {
    WidePath widePath(path);
    if (!widePath.IsAllocated()) {
        return std::nullopt;
    }
    for (const UINT codePage : {static_cast<UINT>(CP_ACP), static_cast<UINT>(CP_UTF8)}) {
        if (!widePath.ConvertFrom(codePage)) {
            return std::nullopt;
        }
        if (const auto time = ReadLastWriteTime(widePath.Text())) {
            return time;
        }
    }
    return std::nullopt;
}

// Any difference is worth a line: the two come from the same file.
void LogDifferenceFromStat(const char* path, std::uint32_t seconds) {
    struct _stat64i32 status = {};
    if (_stat64i32(path, &status) != 0) {
        return;
    }
    const std::int64_t difference = static_cast<std::int64_t>(seconds) - status.st_mtime;
    if (difference != 0) {
        LogMessage(kLogNote, "%s(%s) returning timestamp that differs from stat result by %d seconds.",
                   "QuorvelFileUtils::GetFileModificationDate", path, static_cast<std::int32_t>(difference));
    }
}

}  // namespace

std::uint32_t QuorvelFileUtils::GetFileModificationDate(const char* path) {
    if (path == nullptr) {
        return 0;
    }
    const std::optional<std::int64_t> lastWrite = ReadLastWriteTimeOfNarrowPath(path);
    if (!lastWrite) {
        return 0;
    }
    const auto seconds = static_cast<std::uint32_t>(*lastWrite);
    LogDifferenceFromStat(path, seconds);
    return seconds;
}
