#include "diagnostic/RunHeader.h"

#include <winver.h>

#include <array>
#include <optional>

#include "support/FourPartVersion.h"
#include "support/RunningWindows.h"

namespace {

constexpr std::uint64_t kUnitsPerMinute = 60ULL * 10'000'000;

// Its address lies in the plug-in's module.
const char sAddressInThisModule = 0;

std::uint64_t UnitsOf(const FILETIME& time) { return (std::uint64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime; }

// Null when the module has no such resource. It lies in the module as it stands in the file: a head of 6 bytes, its
// name "VS_VERSION_INFO" in 16-bit units, and from the next multiple of 4 the numbers.
const VS_FIXEDFILEINFO* FixedVersionOf(HMODULE module) {
    constexpr std::size_t kOffset = 40;
    constexpr DWORD kSignature = 0xFEEF04BD;
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-cstyle-cast): Windows' own macros for numbers that stand for names.
    const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(VS_VERSION_INFO), MAKEINTRESOURCEW(16));
    if (resource == nullptr || SizeofResource(module, resource) < kOffset + sizeof(VS_FIXEDFILEINFO)) {
        return nullptr;
    }
    const HGLOBAL handle = LoadResource(module, resource);
    const auto* const bytes = handle == nullptr ? nullptr : static_cast<const char*>(LockResource(handle));
    if (bytes == nullptr) {
        return nullptr;
    }
    const void* const numbers = bytes + kOffset;
    const auto* const fixed = static_cast<const VS_FIXEDFILEINFO*>(numbers);
    return fixed->dwSignature == kSignature ? fixed : nullptr;
}

void AppendWindowsVersion(TextWriter& out) {
    const std::optional<OSVERSIONINFOW> version = RunningWindows();
    if (!version) {
        out.Append("unknown");
        return;
    }
    out.AppendFormat("%lu.%lu.%lu", version->dwMajorVersion, version->dwMinorVersion, version->dwBuildNumber);
    if (version->szCSDVersion[0] != L'\0') {
        out.Append(" ");
        out.Append(std::wstring_view(version->szCSDVersion));
    }
}

}  // namespace

LocalMoment LocalMoment::Now() noexcept {
    FILETIME utc;
    GetSystemTimeAsFileTime(&utc);
    FILETIME local = utc;
    LocalMoment moment{};
    SYSTEMTIME utcTime{};
    // Asks for the rules of the day itself, daylight saving included.
    if (FileTimeToSystemTime(&utc, &utcTime) == 0 ||
        SystemTimeToTzSpecificLocalTime(nullptr, &utcTime, &moment.time) == 0 ||
        SystemTimeToFileTime(&moment.time, &local) == 0) {
        moment.time = utcTime;
        return moment;
    }
    const auto difference = static_cast<std::int64_t>(UnitsOf(local) - UnitsOf(utc));
    // The broken-down time has lost what is less than a millisecond.
    const auto half = static_cast<std::int64_t>(kUnitsPerMinute / 2);
    moment.minutesAheadOfUtc =
        static_cast<int>((difference + (difference < 0 ? -half : half)) / static_cast<std::int64_t>(kUnitsPerMinute));
    return moment;
}

void AppendTime(TextWriter& out, const SYSTEMTIME& time) noexcept {
    out.AppendFormat("%02u:%02u:%02u.%03u", static_cast<unsigned>(time.wHour), static_cast<unsigned>(time.wMinute),
                     static_cast<unsigned>(time.wSecond), static_cast<unsigned>(time.wMilliseconds));
}

void AppendMoment(TextWriter& out, const LocalMoment& moment) noexcept {
    out.AppendFormat("%04u-%02u-%02u ", static_cast<unsigned>(moment.time.wYear),
                     static_cast<unsigned>(moment.time.wMonth), static_cast<unsigned>(moment.time.wDay));
    AppendTime(out, moment.time);
    const bool isWest = moment.minutesAheadOfUtc < 0;
    const int minutes = isWest ? -moment.minutesAheadOfUtc : moment.minutesAheadOfUtc;
    out.AppendFormat(" %c%02d:%02d", isWest ? '-' : '+', minutes / 60, minutes % 60);
}

void AppendModule(TextWriter& out, HMODULE module) noexcept {
    if (const VS_FIXEDFILEINFO* const version = FixedVersionOf(module)) {
        const std::array<unsigned, 4> parts = PartsOfVersion(*version);
        out.AppendFormat("%u.%u.%u.%u", parts[0], parts[1], parts[2], parts[3]);
    } else {
        out.Append("without a version");
    }
    out.Append("  ");
    std::array<wchar_t, 1024> path;
    const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
    out.Append(std::wstring_view(path.data(), length));
}

HMODULE ModuleAt(const void* address) noexcept {
    // Windows takes null for the program.
    if (address == nullptr) {
        return nullptr;
    }
    HMODULE module = nullptr;
    constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    return GetModuleHandleExW(kFlags, static_cast<LPCWSTR>(address), &module) != 0 ? module : nullptr;
}

void AppendRunHeader(TextWriter& out, const LocalMoment& moment, int part, std::string_view pluginCore) noexcept {
    out.Append("==== Quorvel Type Agent, diagnostic log");
    if (part > 1) {
        out.AppendFormat(", part %d of the run", part);
    }
    out.Append(" ====\r\nDate:     ");
    AppendMoment(out, moment);
    out.Append("\r\nPlug-in:  ");
    AppendModule(out, ModuleAt(&sAddressInThisModule));
    out.Append("\r\nHost:     ");
    AppendModule(out, GetModuleHandleW(nullptr));
    out.Append("\r\nWindows:  ");
    AppendWindowsVersion(out);
    out.AppendFormat("\r\nProcess:  %lu\r\n", GetCurrentProcessId());
    if (part > 1 && !pluginCore.empty()) {
        out.Append("PluginCore: ");
        out.Append(pluginCore);
        out.Append("\r\n");
    }
    out.Append("\r\n");
}
