#include "simhost/sweep/Explanations.h"

#include <algorithm>

#include "doubles/host/suites/SuiteList.h"

namespace simhost::sweep {

namespace {

constexpr std::string_view kHeldSuite = "<held suite>";
constexpr std::string_view kHeldSuiteButTheLast = "<held suite but the last>";

constexpr Explanation kExplanations[] = {
    // Intentional: a table that is refused in part stays held as far as it was acquired, and one that cannot be given
    // back stays held from there on. The host's end takes it back.
    {"SP Basic Suite/AcquireSuite/<held suite>", "suite-leak <held suite>", Amount::kAny},
    {"SP Basic Suite/ReleaseSuite/<held suite>", "suite-leak <held suite>", Amount::kAny},
    {"SP Basic Suite/ReleaseSuite/*", "suite-leak *"},
    // Without the suite of strings nobody can give one back that the host has filled in. It is the last but one of the
    // table: whichever suite before is refused, it is not there.
    {"SP Basic Suite/AcquireSuite/<held suite but the last>", "string-leak", Amount::kAny},
    {"SP Blocks Suite/FreeBlock", "block-leak"},
    {"AI Unicode String Suite/Destroy", "string-leak"},
    {"AI File Path Suite/DeleteFilePath", "path-leak"},
    {"AI MdMemory Suite/MdMemoryDisposeHandle", "handle-leak"},
    {"AI Timer Suite/SetTimerActive", "timer-left"},
    // To release begins with asking for the suite that does it, and with asking whether there is something to release.
    {"SP Basic Suite/AcquireSuite/SP Blocks Suite", "block-leak"},
    {"SP Basic Suite/AcquireSuite/AI Timer Suite", "timer-left"},
    {"AI Timer Suite/GetTimerActive", "timer-left"},
    {"UnhookWindowsHookEx", "hook-left"},
    {"UnhookWindowsHookEx", "SetWindowsHookExW"},
    {"CloseHandle", "CreateFileW"},
    {"CloseHandle", "OpenProcess"},
    {"CloseHandle", "CreateToolhelp32Snapshot"},
    {"CloseHandle", "CreateSemaphoreW"},
    {"FreeLibrary", "LoadLibraryA"},
    {"FreeLibrary", "LoadLibraryW"},
    {"FreeLibrary", "GetModuleHandleExW"},
    // Intentional: each attempt to reach the panel leaves its search open and its library loaded, and the next tick
    // makes another one.
    {"GetProcAddress", "FindFirstFileW", Amount::kAlso},
    {"GetProcAddress", "LoadLibraryW", Amount::kAlso},
    {"malloc", "FindFirstFileW", Amount::kAlso},
    {"malloc", "LoadLibraryW", Amount::kAlso},
    {"LoadLibraryW", "FindFirstFileW"},
    // Intentional: the PluginCore is never unloaded. When memory runs out before it is bound, the next search loads it
    // once more.
    {"malloc", "LoadLibraryA", Amount::kAlso},
    {"fclose", "fopen"},
    {"fclose", "_wfopen"},
};

constexpr Kept kKept[] = {
    // The PluginCore's library, and the loader with two texts.
    {"LoadLibraryA", 1, "LoadLibraryA"},
    {"malloc", 3, "LoadLibraryA"},
    // The process beside whose program it was found.
    {"OpenProcess", 1, "OpenProcess"},
    // The messaging library, and the search for it.
    {"LoadLibraryW", 1, "LoadLibraryW"},
    {"FindFirstFileW", 1, "FindFirstFileW"},
};

bool IsHeldSuite(std::string_view name) {
    const auto held = HeldSuites();
    return std::any_of(held.begin(), held.end(), [&](const auto& suite) { return name == suite.name; });
}

}  // namespace

bool Matches(std::string_view name, std::string_view pattern) {
    for (const std::string_view placeholder : {kHeldSuite, kHeldSuiteButTheLast}) {
        if (pattern.ends_with(placeholder)) {
            const std::string_view begin = pattern.substr(0, pattern.size() - placeholder.size());
            return name.starts_with(begin) && IsHeldSuite(name.substr(begin.size())) &&
                   (placeholder == kHeldSuite || name.substr(begin.size()) != HeldSuites().back().name);
        }
    }
    return pattern.ends_with('*') ? name.starts_with(pattern.substr(0, pattern.size() - 1)) : name == pattern;
}

bool Explanation::IsAbout(std::string_view what) const { return Matches(what, left); }

bool Explanation::IsBehind(std::string_view operation, std::string_view what) const {
    std::string bound = failed;
    if (bound.ends_with('*')) {
        bound.pop_back();
        bound += what.substr(std::string_view(left).size() - 1);
    }
    return Matches(operation, bound);
}

std::span<const Explanation> Explanations() { return kExplanations; }

std::span<const Kept> KeptOnPurpose() { return kKept; }

}  // namespace simhost::sweep
