// Thread: any.
#pragma once

#include <windows.h>
// After windows.h, which it needs.
#include <winver.h>

#include <array>

// The version of a file, 1.2.3.4, as its resource holds it.
inline std::array<unsigned, 4> PartsOfVersion(const VS_FIXEDFILEINFO& version) noexcept {
    return {HIWORD(version.dwFileVersionMS), LOWORD(version.dwFileVersionMS), HIWORD(version.dwFileVersionLS),
            LOWORD(version.dwFileVersionLS)};
}
