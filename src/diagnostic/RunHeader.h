// What stands at the head of a log, and the parts of it that other lines need too. What is told about files comes from
// memory: no file is opened, because the first line comes while the plug-in itself is being loaded.
// Thread: any.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string_view>

#include "diagnostic/TextWriter.h"

// A moment, as the clock on the wall shows it.
struct LocalMoment {
    SYSTEMTIME time;
    int minutesAheadOfUtc;  // 60 in Berlin in winter

    static LocalMoment Now() noexcept;
};

// "17:50:03.123"
void AppendTime(TextWriter& out, const SYSTEMTIME& time) noexcept;
// "2026-11-22 17:50:03.123 +01:00"
void AppendMoment(TextWriter& out, const LocalMoment& moment) noexcept;

// Some lines: when, and the versions and paths of the plug-in, the host and Windows. `part` is 1 for the first file of
// the run; `pluginCore`, its version and path, stands in later ones.
void AppendRunHeader(TextWriter& out, const LocalMoment& moment, int part, std::string_view pluginCore) noexcept;

// "1.2.3.4  C:\path": the version of the module's file in four numbers, or "without a version", and its path.
void AppendModule(TextWriter& out, HMODULE module) noexcept;

// The module that an address lies in; null when it lies in none. Not counted as a user of it.
HMODULE ModuleAt(const void* address) noexcept;
