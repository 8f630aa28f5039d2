#include "diagnostic/RunHeader.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>

#include "doubles/common/ImportPatch.h"
#include "support/files/TemporaryFolder.h"
#include "support/TextConversion.h"

namespace {

template <class Append>
std::string Written(Append append) {
    char memory[8192];
    TextWriter out(memory);
    append(out);
    return std::string(out.Text());
}

std::string ProgramPath() {
    wchar_t path[1024];
    return Utf8FromWindowsText({path, GetModuleFileNameW(nullptr, path, 1024)});
}

BOOL WINAPI AheadOfUtc(const TIME_ZONE_INFORMATION*, const SYSTEMTIME* utc, SYSTEMTIME* local) {
    *local = *utc;
    FILETIME time;
    SystemTimeToFileTime(utc, &time);
    ULARGE_INTEGER units{{time.dwLowDateTime, time.dwHighDateTime}};
    units.QuadPart += 330ULL * 60 * 10'000'000;
    time = {units.LowPart, units.HighPart};
    return FileTimeToSystemTime(&time, local);
}

BOOL WINAPI BehindUtc(const TIME_ZONE_INFORMATION*, const SYSTEMTIME* utc, SYSTEMTIME* local) {
    FILETIME time;
    SystemTimeToFileTime(utc, &time);
    ULARGE_INTEGER units{{time.dwLowDateTime, time.dwHighDateTime}};
    units.QuadPart -= 210ULL * 60 * 10'000'000;
    time = {units.LowPart, units.HighPart};
    return FileTimeToSystemTime(&time, local);
}

BOOL WINAPI NoLocalTime(const TIME_ZONE_INFORMATION*, const SYSTEMTIME*, SYSTEMTIME*) { return FALSE; }

TEST(RunHeader, MomentIsWrittenWithItsOffsetFromUtc) {
    const SYSTEMTIME time{2026, 1, 5, 2, 3, 4, 5, 6};
    const auto text = [&](int minutes) {
        return Written([&](TextWriter& out) { AppendMoment(out, {time, minutes}); });
    };
    EXPECT_EQ(text(0), "2026-01-02 03:04:05.006 +00:00");
    EXPECT_EQ(text(60), "2026-01-02 03:04:05.006 +01:00");
    EXPECT_EQ(text(-210), "2026-01-02 03:04:05.006 -03:30");
}

TEST(RunHeader, OffsetIsTheDifferenceOfLocalTimeAndUtc) {
    {
        const ImportPatch patch("SystemTimeToTzSpecificLocalTime", AsReplacement(AheadOfUtc));
        EXPECT_EQ(LocalMoment::Now().minutesAheadOfUtc, 330);
    }
    {
        const ImportPatch patch("SystemTimeToTzSpecificLocalTime", AsReplacement(BehindUtc));
        EXPECT_EQ(LocalMoment::Now().minutesAheadOfUtc, -210);
    }
    const ImportPatch patch("SystemTimeToTzSpecificLocalTime", AsReplacement(NoLocalTime));
    const LocalMoment utc = LocalMoment::Now();
    SYSTEMTIME now;
    GetSystemTime(&now);
    EXPECT_EQ(utc.minutesAheadOfUtc, 0);
    EXPECT_EQ(utc.time.wYear, now.wYear);
}

TEST(RunHeader, ModuleIsToldWithItsVersionAndPath) {
    EXPECT_EQ(Written([](TextWriter& out) { AppendModule(out, GetModuleHandleW(nullptr)); }),
              "1.2.3.4  " + ProgramPath());
}

TEST(RunHeader, ModuleWithoutAVersionResourceSaysSo) {
    const auto path = TestProgramFolder() / "libraries" / "without_version_resource.dll";
    const HMODULE module = LoadLibraryW(path.c_str());
    ASSERT_NE(module, nullptr);
    const std::string text = Written([&](TextWriter& out) { AppendModule(out, module); });
    FreeLibrary(module);
    EXPECT_TRUE(std::regex_match(text, std::regex(R"(without a version  .*\\without_version_resource\.dll)"))) << text;
}

TEST(RunHeader, ModuleAtAnAddressIsFoundAndNotHeld) {
    static const int address = 0;
    EXPECT_EQ(ModuleAt(&address), GetModuleHandleW(nullptr));
    EXPECT_EQ(ModuleAt(nullptr), nullptr);
    const auto path = TestProgramFolder() / "libraries" / "without_version_resource.dll";
    const HMODULE module = LoadLibraryW(path.c_str());
    EXPECT_EQ(ModuleAt(module), module);
    FreeLibrary(module);
    EXPECT_EQ(GetModuleHandleW(L"without_version_resource.dll"), nullptr);
}

TEST(RunHeader, TellsDateVersionsSystemAndProcess) {
    const SYSTEMTIME time{2026, 11, 0, 22, 17, 50, 3, 123};
    const std::string first = Written([&](TextWriter& out) {
        AppendRunHeader(out, {time, 60}, 1, "4.3.2.1  C:\\core.dll");
    });
    const std::regex windows(R"(\r\nWindows:  10\.0\.\d+( [^\r]*)?\r\n)");
    EXPECT_TRUE(std::regex_search(first, windows)) << first;
    EXPECT_EQ(std::regex_replace(first, windows, "\r\nWindows:  W\r\n"),
              "==== Quorvel Type Agent, diagnostic log ====\r\n"
              "Date:     2026-11-22 17:50:03.123 +01:00\r\n"
              "Plug-in:  1.2.3.4  " +
                  ProgramPath() +
                  "\r\n"
                  "Host:     1.2.3.4  " +
                  ProgramPath() +
                  "\r\n"
                  "Windows:  W\r\n"
                  "Process:  " +
                  std::to_string(GetCurrentProcessId()) + "\r\n\r\n");
    const std::string third = Written([&](TextWriter& out) {
        AppendRunHeader(out, {time, 60}, 3, "4.3.2.1  C:\\core.dll");
    });
    EXPECT_TRUE(third.starts_with("==== Quorvel Type Agent, diagnostic log, part 3 of the run ====\r\n")) << third;
    EXPECT_TRUE(third.ends_with("\r\nPluginCore: 4.3.2.1  C:\\core.dll\r\n\r\n")) << third;
    const std::string unknown = Written([&](TextWriter& out) { AppendRunHeader(out, {time, 60}, 3, ""); });
    EXPECT_EQ(unknown.find("PluginCore"), std::string::npos) << unknown;
}

}  // namespace
