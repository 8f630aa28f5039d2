#include "simhost/checks/HostState.h"

#include <windows.h>

#include <xmmintrin.h>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <iterator>

#include "doubles/common/CompilerSupport.h"
#include "doubles/common/Text.h"

namespace simhost {

namespace {

// The lower six bits tell what has happened since they were cleared.
constexpr std::uint32_t kControlBits = 0xFFC0;

using ReadText = DWORD(WINAPI*)(DWORD size, wchar_t* text);

std::wstring TextOf(ReadText read) {
    wchar_t usual[MAX_PATH];
    const DWORD length = read(MAX_PATH, usual);
    if (length < MAX_PATH) {
        return {usual, length};
    }
    std::wstring text(length, L'\0');
    text.resize(read(length, text.data()));
    return text;
}

// Windows tells it only in return for another one.
const void* ExceptionFilter() {
    const LPTOP_LEVEL_EXCEPTION_FILTER filter = SetUnhandledExceptionFilter(nullptr);
    SetUnhandledExceptionFilter(filter);
    return reinterpret_cast<const void*>(filter);
}

// Texts that each end with a zero, and one more behind the last.
std::size_t LengthOfBlock(const wchar_t* block) {
    const wchar_t* end = block;
    while (*end != L'\0') {
        end += std::char_traits<wchar_t>::length(end) + 1;
    }
    return static_cast<std::size_t>(end - block);
}

// Its threads would have to share the latest.
std::shared_ptr<const std::wstring> Environment() {
    thread_local auto& sLatest = *new std::shared_ptr<const std::wstring>(std::make_shared<std::wstring>());
    wchar_t* const block = GetEnvironmentStringsW();
    const std::wstring_view now(block, LengthOfBlock(block));
    if (now != *sLatest) {
        sLatest = std::make_shared<const std::wstring>(now);
    }
    FreeEnvironmentStringsW(block);
    return sLatest;
}

std::string InHexadecimal(std::uint64_t number) {
    char text[20];
    std::snprintf(text, sizeof text, "0x%04llX", static_cast<unsigned long long>(number));
    return text;
}

std::string InWords(const std::wstring& text) { return '"' + Utf8(text) + '"'; }
std::string InWords(const std::string& text) { return '"' + text + '"'; }
std::string InWords(std::uint32_t value) { return InHexadecimal(value); }
std::string InWords(const void* address) { return InHexadecimal(reinterpret_cast<std::uintptr_t>(address)); }

std::vector<std::wstring> Variables(const std::wstring& block) {
    std::vector<std::wstring> variables;
    for (std::size_t begin = 0; begin < block.size(); begin += variables.back().size() + 1) {
        variables.emplace_back(block.c_str() + begin);
    }
    std::sort(variables.begin(), variables.end());
    return variables;
}

std::string WithoutThoseOf(const std::vector<std::wstring>& some, const std::vector<std::wstring>& others) {
    std::vector<std::wstring> left;
    std::set_difference(some.begin(), some.end(), others.begin(), others.end(), std::back_inserter(left));
    std::string words;
    for (const std::wstring& variable : left) {
        words += (words.empty() ? "" : ", ") + InWords(variable);
    }
    return words.empty() ? "nothing" : words;
}

std::string EnvironmentChange(const HostState& before, const HostState& now) {
    const std::vector<std::wstring> had = Variables(*before.environment);
    const std::vector<std::wstring> has = Variables(*now.environment);
    return "the environment got " + WithoutThoseOf(has, had) + ", it lost " + WithoutThoseOf(had, has);
}

struct Row {
    HostStateKind kind;
    bool (*isSame)(const HostState& one, const HostState& other);
    std::string (*change)(const char* name, const HostState& before, const HostState& now);
    void (*copy)(const HostState& from, HostState& to);
    const char* name;
};

template <auto Member>
constexpr Row RowOf(HostStateKind kind, const char* name) {
    return {kind, [](const HostState& one, const HostState& other) { return one.*Member == other.*Member; },
            [](const char* what, const HostState& before, const HostState& now) {
                return std::string(what) + " became " + InWords(now.*Member) + ", it was " + InWords(before.*Member);
            },
            [](const HostState& from, HostState& to) { to.*Member = from.*Member; }, name};
}

constexpr Row kRows[] = {
    RowOf<&HostState::currentFolder>(HostStateKind::kCurrentFolder, "the current folder"),
    RowOf<&HostState::libraryFolder>(HostStateKind::kLibraryFolder, "the folder that is searched for libraries"),
    RowOf<&HostState::locale>(HostStateKind::kLocale, "the C runtime's locale"),
    RowOf<&HostState::threadLocale>(HostStateKind::kThreadLocale, "the thread's locale"),
    RowOf<&HostState::floatingPointControl>(HostStateKind::kFloatingPointControl, "MXCSR"),
    RowOf<&HostState::x87Control>(HostStateKind::kX87Control, "the x87 control word"),
    RowOf<&HostState::errorMode>(HostStateKind::kErrorMode, "the error mode"),
    RowOf<&HostState::threadErrorMode>(HostStateKind::kThreadErrorMode, "the thread's error mode"),
    RowOf<&HostState::exceptionFilter>(HostStateKind::kExceptionFilter, "the filter of unhandled exceptions"),
    {HostStateKind::kEnvironment,
     [](const HostState& one, const HostState& other) {
         return one.environment == other.environment || *one.environment == *other.environment;
     },
     [](const char*, const HostState& before, const HostState& now) { return EnvironmentChange(before, now); },
     [](const HostState& from, HostState& to) { to.environment = from.environment; }, ""},
};

}  // namespace

HostState HostState::Now() {
    const DWORD error = GetLastError();
    HostState now{TextOf(&GetCurrentDirectoryW),
                  TextOf(&GetDllDirectoryW),
                  setlocale(LC_ALL, nullptr),
                  GetThreadLocale(),
                  _mm_getcsr() & kControlBits,
                  X87ControlWord(),
                  GetErrorMode(),
                  GetThreadErrorMode(),
                  ExceptionFilter(),
                  Environment()};
    // Who asks may be between a call of Windows and whoever wants to know its error.
    SetLastError(error);
    return now;
}

std::vector<HostStateChange> ChangesBetween(const HostState& before, const HostState& now) {
    std::vector<HostStateChange> changes;
    for (const Row& row : kRows) {
        if (!row.isSame(before, now)) {
            changes.push_back({row.kind, row.change(row.name, before, now)});
        }
    }
    return changes;
}

void CopyKind(HostStateKind kind, const HostState& from, HostState& to) {
    std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& row) { return row.kind == kind; })->copy(from, to);
}

}  // namespace simhost
