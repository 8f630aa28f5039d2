// Thread: any.
#pragma once

#include <windows.h>

#include <optional>

#include "support/NtFunction.h"

// Of the Windows that runs; nothing when it does not tell. The documented functions tell each program the version that
// it says it knows.
inline std::optional<OSVERSIONINFOW> RunningWindows() noexcept {
    const auto getVersion = NtFunction<LONG(WINAPI*)(OSVERSIONINFOW*)>("RtlGetVersion");
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    if (getVersion == nullptr || getVersion(&version) != 0) {
        return std::nullopt;
    }
    return version;
}
