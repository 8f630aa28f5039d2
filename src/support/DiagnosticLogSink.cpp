#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "support/LogSink.h"

namespace {

constexpr wchar_t kLogFileName[] = L"QuorvelTypeAgentAI20.log";
constexpr int kColumnsPerLevel = 2;

// How deep the current operation is nested; lives as long as the module, main thread only like all logging.
int sDepth = 0;

// "<temporary folder>\QuorvelTypeAgentAI20.log", opened for every line so that a crash loses none.
void AppendToLogFile(const char* line, std::size_t length) noexcept {
    wchar_t path[MAX_PATH + 64];
    const DWORD folderLength = GetTempPathW(MAX_PATH, path);
    if (folderLength == 0 || folderLength > MAX_PATH) {
        return;
    }
    std::memcpy(path + folderLength, kLogFileName, sizeof(kLogFileName));
    const HANDLE file = CreateFileW(path, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return;
    }
    DWORD written = 0;
    WriteFile(file, line, static_cast<DWORD>(length), &written, nullptr);
    CloseHandle(file);
}

}  // namespace

void WriteLogLine(std::int32_t level, const char* text) noexcept {
    if (level < 0) {
        sDepth = std::max(sDepth - 1, 0);
    }
    char line[8192 + 256];
    const int indent = std::min(sDepth * kColumnsPerLevel, 200);
    const int length = std::snprintf(line, sizeof(line), "%*s%s\r\n", indent, "", text);
    if (length > 0) {
        OutputDebugStringA(line);
        AppendToLogFile(line, std::min(static_cast<std::size_t>(length), sizeof(line) - 1));
    }
    if (level > 0) {
        ++sDepth;
    }
}
