#include "Files.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <iterator>
#include <stdexcept>

#include "support/KernelHandle.h"
#include "support/TextConversion.h"

namespace {

std::wstring MessageOf(DWORD error) {
    wchar_t text[512];
    constexpr DWORD kFlags = FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS;
    std::wstring message(text, FormatMessageW(kFlags, nullptr, error, 0, text, std::size(text), nullptr));
    while (!message.empty() && (message.back() == L'\n' || message.back() == L'\r')) {
        message.pop_back();
    }
    return message + L" (" + std::to_wstring(error) + L")";
}

std::wstring Widened(UINT codePage, DWORD flags, std::string_view bytes) {
    if (bytes.empty()) {
        return {};
    }
    const auto size = static_cast<int>(bytes.size());
    std::wstring text(static_cast<std::size_t>(MultiByteToWideChar(codePage, flags, bytes.data(), size, nullptr, 0)),
                      L'\0');
    MultiByteToWideChar(codePage, flags, bytes.data(), size, text.data(), static_cast<int>(text.size()));
    return text;
}

// False with the reason in the last error.
bool WriteAll(const std::filesystem::path& path, std::string_view bytes) {
    DWORD error = ERROR_SUCCESS;
    {
        const FileHandle file(
            CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        if (!file) {
            return false;
        }
        while (!bytes.empty() && error == ERROR_SUCCESS) {
            constexpr std::size_t kPiece = 1 << 20;
            DWORD written = 0;
            if (WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(std::min(bytes.size(), kPiece)), &written,
                          nullptr) == FALSE) {
                error = GetLastError();
            }
            bytes.remove_prefix(written);
        }
    }
    SetLastError(error);
    return error == ERROR_SUCCESS;
}

}  // namespace

std::optional<std::string> ReadFileOrNothing(const std::filesystem::path& path) {
    const FileHandle file(CreateFileW(path.c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        return std::nullopt;
    }
    std::string bytes;
    char piece[64 * 1024];
    for (DWORD size = sizeof piece; size > 0;) {
        if (ReadFile(file.Get(), piece, sizeof piece, &size, nullptr) == FALSE) {
            return std::nullopt;
        }
        bytes.append(piece, size);
    }
    return bytes;
}

void WriteFileWhole(const std::filesystem::path& path, std::string_view bytes) {
    std::filesystem::path unfinished = path;
    unfinished += L".unfinished";
    const bool isDone = WriteAll(unfinished, bytes) &&
                        MoveFileExW(unfinished.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING) != FALSE;
    if (!isDone) {
        const std::wstring reason = MessageOf(GetLastError());
        DeleteFileW(unfinished.c_str());
        throw std::runtime_error(Utf8FromWindowsText(path.wstring() + L": " + reason));
    }
}

std::wstring DecodedText(std::string_view bytes) {
    constexpr std::string_view kUtf16Mark = "\xFF\xFE";
    constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
    if (bytes.starts_with(kUtf16Mark)) {
        bytes.remove_prefix(kUtf16Mark.size());
        std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
        std::memcpy(text.data(), bytes.data(), text.size() * sizeof(wchar_t));
        return text;
    }
    if (bytes.starts_with(kUtf8Mark)) {
        bytes.remove_prefix(kUtf8Mark.size());
    }
    // A log may hold a path in the ANSI code page, among lines in UTF-8 whose names must be found.
    std::wstring text;
    while (!bytes.empty()) {
        const std::size_t feed = bytes.find('\n');
        const std::string_view line = bytes.substr(0, feed == std::string_view::npos ? feed : feed + 1);
        const std::wstring utf8 = Widened(CP_UTF8, MB_ERR_INVALID_CHARS, line);
        text += utf8.empty() ? Widened(CP_ACP, 0, line) : utf8;
        bytes.remove_prefix(line.size());
    }
    return text;
}
