#pragma once

#include <cstdint>

namespace QuorvelFileUtils {

// The file's last-write time in seconds since 1970-01-01 00:00 UTC, cut to 32 bits; 0 when it cannot be read or `path`
// is null or empty. `path` is tried in the ANSI code page first, then as UTF-8.
// Thread: main.
std::uint32_t GetFileModificationDate(const char* path);

}  // namespace QuorvelFileUtils
