#include "diagnostic/LogFile.h"

#include <algorithm>
#include <cwchar>

#include "diagnostic/LogFolder.h"

namespace {

constexpr wchar_t kNameBegin[] = L"QuorvelTypeAgentAI20-";
constexpr wchar_t kNameEnd[] = L".log";

// Appends while there is room for the text and its zero; nothing of it otherwise.
bool AppendTo(std::span<wchar_t> path, std::size_t& length, std::wstring_view text) {
    if (text.size() >= path.size() - length) {
        return false;
    }
    std::copy(text.begin(), text.end(), path.begin() + static_cast<std::ptrdiff_t>(length));
    length += text.size();
    path[length] = L'\0';
    return true;
}

// What was written last, and of equal times the greater name, is newest.
struct Age {
    FILETIME written{};
    wchar_t name[MAX_PATH] = {};
};

Age AgeOf(const WIN32_FIND_DATAW& found) {
    Age age;
    age.written = found.ftLastWriteTime;
    std::copy_n(found.cFileName, MAX_PATH, age.name);
    return age;
}

bool IsOlder(const Age& one, const Age& other) {
    const LONG order = CompareFileTime(&one.written, &other.written);
    return order != 0 ? order < 0 : std::wcscmp(one.name, other.name) < 0;
}

// What a look into the folder finds.
struct Found {
    int count = 0;
    bool hasOldest = false;
    Age oldest;
};

// The oldest of those that are younger than `than`; of all, when that is null.
Found Look(const wchar_t* pattern, const Age* than) {
    Found found;
    WIN32_FIND_DATAW each;
    const HANDLE search = FindFirstFileW(pattern, &each);
    if (search == INVALID_HANDLE_VALUE) {
        return found;
    }
    do {
        ++found.count;
        const Age age = AgeOf(each);
        if ((than == nullptr || IsOlder(*than, age)) && (!found.hasOldest || IsOlder(age, found.oldest))) {
            found.hasOldest = true;
            found.oldest = age;
        }
    } while (FindNextFileW(search, &each) != 0);
    FindClose(search);
    return found;
}

bool MakeFolder(const wchar_t* path) {
    return CreateDirectoryW(path, nullptr) != 0 || GetLastError() == ERROR_ALREADY_EXISTS;
}

}  // namespace

std::size_t MakeLogFolder(std::span<wchar_t> path) noexcept {
    // The variable and not the shell's own question: that one may load libraries, and the first line comes while the
    // plug-in itself is being loaded.
    const auto size = static_cast<DWORD>(path.size());
    std::size_t length = GetEnvironmentVariableW(L"LOCALAPPDATA", path.data(), size);
    if (length == 0) {
        length = GetTempPathW(size, path.data());
    }
    if (length == 0 || length >= path.size()) {
        return 0;
    }
    while (length > 0 && (path[length - 1] == L'\\' || path[length - 1] == L'/')) {
        path[--length] = L'\0';
    }
    for (const wchar_t* const folder : kLogFolders) {
        if (!AppendTo(path, length, L"\\") || !AppendTo(path, length, folder) || !MakeFolder(path.data())) {
            return 0;
        }
    }
    return length;
}

void LogFile::Open(std::wstring_view folder, const SYSTEMTIME& begin, DWORD process, LogFileLimits limits) noexcept {
    Close();
    mLimits = limits;
    std::size_t length = 0;
    if (!AppendTo(mFolder, length, folder)) {
        mFolder[0] = L'\0';
    }
    _snwprintf_s(mRun, std::size(mRun), _TRUNCATE, L"%ls%04u%02u%02u-%02u%02u%02u-%lu", kNameBegin, begin.wYear,
                 begin.wMonth, begin.wDay, begin.wHour, begin.wMinute, begin.wSecond, process);
    mPart = 1;
    OpenPart();
}

void LogFile::OpenNextPart() noexcept {
    Close();
    ++mPart;
    OpenPart();
}

void LogFile::Close() noexcept {
    if (mFile != INVALID_HANDLE_VALUE) {
        CloseHandle(mFile);
        mFile = INVALID_HANDLE_VALUE;
    }
}

void LogFile::OpenPart() noexcept {
    mSize = 0;
    mLastLineIsReplaceable = false;
    wchar_t path[kPathSize + 128];
    if (mFolder[0] == L'\0') {
        return;
    }
    if (mPart == 1) {
        _snwprintf_s(path, std::size(path), _TRUNCATE, L"%ls\\%ls%ls", mFolder, mRun, kNameEnd);
    } else {
        _snwprintf_s(path, std::size(path), _TRUNCATE, L"%ls\\%ls-part%d%ls", mFolder, mRun, mPart, kNameEnd);
    }
    // Others may read it, and not delete it: a host that is started meanwhile clears old files away.
    mFile = CreateFileW(path, GENERIC_WRITE, FILE_SHARE_READ, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (mFile == INVALID_HANDLE_VALUE) {
        return;
    }
    // There may be one already, when the plug-in was unloaded and loaded again within a second.
    LARGE_INTEGER size{};
    if (SetFilePointerEx(mFile, size, &size, FILE_END) != 0) {
        mSize = static_cast<std::uint64_t>(size.QuadPart);
    }
    DeleteOldFiles();
}

bool LogFile::HasRoomFor(std::size_t size) const noexcept {
    return mFile == INVALID_HANDLE_VALUE || mSize == 0 || mSize + size <= mLimits.partSize;
}

void LogFile::Append(std::string_view line) noexcept {
    mLastLineIsReplaceable = false;
    Write(line);
}

void LogFile::AppendOrReplace(std::string_view line) noexcept {
    if (mLastLineIsReplaceable) {
        LARGE_INTEGER begin;
        begin.QuadPart = static_cast<LONGLONG>(mReplaceable);
        if (SetFilePointerEx(mFile, begin, nullptr, FILE_BEGIN) == 0) {
            return;
        }
        const std::uint64_t end = mSize;
        mSize = mReplaceable;
        Write(line);
        if (mSize < end) {
            SetEndOfFile(mFile);
        }
        return;
    }
    mReplaceable = mSize;
    Write(line);
    mLastLineIsReplaceable = true;
}

void LogFile::Write(std::string_view bytes) noexcept {
    if (mFile == INVALID_HANDLE_VALUE) {
        return;
    }
    DWORD written = 0;
    // What a full disk does not take is lost.
    WriteFile(mFile, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    mSize += written;
}

void LogFile::DeleteOldFiles() const noexcept {
    wchar_t path[kPathSize + MAX_PATH + 2];
    _snwprintf_s(path, std::size(path), _TRUNCATE, L"%ls\\%ls*%ls", mFolder, kNameBegin, kNameEnd);
    wchar_t pattern[std::size(path)];
    std::copy(std::begin(path), std::end(path), pattern);

    Age tried;
    const Age* than = nullptr;
    for (;;) {
        const Found found = Look(pattern, than);
        if (found.count <= mLimits.keptFiles || !found.hasOldest) {
            return;
        }
        // Fails for one that a running host writes to, which stays.
        _snwprintf_s(path, std::size(path), _TRUNCATE, L"%ls\\%ls", mFolder, found.oldest.name);
        DeleteFileW(path);
        tried = found.oldest;
        than = &tried;
    }
}
