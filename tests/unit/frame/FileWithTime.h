// Documents on disk whose last write the test decides.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>

// Makes a file, or empties it, whose last write was `seconds` after 1970.
inline void WriteFileWithTime(const std::string& path, std::uint32_t seconds) {
    const HANDLE handle = CreateFileA(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    const std::uint64_t ticks = 116444736000000000ull + std::uint64_t{seconds} * 10000000ull;
    const FILETIME time{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    SetFileTime(handle, nullptr, nullptr, &time);
    CloseHandle(handle);
}
