#include "RunningPrograms.h"

#include <tlhelp32.h>

#include <algorithm>
#include <cwchar>
#include <utility>

#include "support/KernelHandle.h"

namespace {

constexpr const wchar_t* kHost = L"Illustrator.exe";
constexpr const wchar_t* kCoreApplication = L"Lumet.exe";
constexpr std::wstring_view kPluginBegin = L"QuorvelTypeAgentAI";
constexpr std::wstring_view kPluginEnd = L".aip";

bool IsSameName(const wchar_t* one, const wchar_t* other) { return _wcsicmp(one, other) == 0; }

// Windows refuses while the process is loading libraries: it is asked again for a moment.
FileHandle ModuleSnapshot(DWORD process) {
    constexpr int kTries = 20;
    constexpr DWORD kPauseInMilliseconds = 20;
    for (int i = 0; i < kTries; ++i) {
        FileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPMODULE | TH32CS_SNAPMODULE32, process));
        if (snapshot || GetLastError() != ERROR_BAD_LENGTH) {
            return snapshot;
        }
        Sleep(kPauseInMilliseconds);
    }
    return FileHandle();
}

std::vector<LoadedModule> ModulesOf(DWORD process) {
    std::vector<LoadedModule> modules;
    const FileHandle snapshot = ModuleSnapshot(process);
    MODULEENTRY32W each{};
    each.dwSize = sizeof each;
    for (BOOL found = snapshot ? Module32FirstW(snapshot.Get(), &each) : FALSE; found != FALSE;
         found = Module32NextW(snapshot.Get(), &each)) {
        modules.push_back({each.szExePath, reinterpret_cast<std::uintptr_t>(each.modBaseAddr), each.modBaseSize});
    }
    return modules;
}

bool IsWanted(const RunningProgram& program, const std::vector<DWORD>& further) {
    return IsSameName(program.name.c_str(), kHost) || IsCoreApplication(program) || FindPlugin(program) != nullptr ||
           std::ranges::find(further, program.process) != further.end();
}

}  // namespace

std::vector<RunningProgram> FindRunningPrograms(const std::vector<DWORD>& further) {
    std::vector<RunningProgram> programs;
    const FileHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
    PROCESSENTRY32W each{};
    each.dwSize = sizeof each;
    for (BOOL found = snapshot ? Process32FirstW(snapshot.Get(), &each) : FALSE; found != FALSE;
         found = Process32NextW(snapshot.Get(), &each)) {
        // 0 would mean this program itself.
        if (each.th32ProcessID == 0) {
            continue;
        }
        RunningProgram program{each.th32ProcessID, each.szExeFile, ModulesOf(each.th32ProcessID)};
        if (IsWanted(program, further)) {
            programs.push_back(std::move(program));
        }
    }
    std::ranges::sort(programs, {}, &RunningProgram::process);
    return programs;
}

const LoadedModule* FindModule(const RunningProgram& program, const std::wstring& name) {
    const auto found = std::ranges::find_if(program.modules, [&](const LoadedModule& each) {
        return IsSameName(each.path.filename().c_str(), name.c_str());
    });
    return found == program.modules.end() ? nullptr : &*found;
}

bool IsCoreApplication(const RunningProgram& program) { return IsSameName(program.name.c_str(), kCoreApplication); }

const LoadedModule* FindPlugin(const RunningProgram& program) {
    const auto found = std::ranges::find_if(program.modules, [](const LoadedModule& each) {
        const std::wstring name = each.path.filename();
        return name.size() > kPluginBegin.size() + kPluginEnd.size() &&
               _wcsnicmp(name.c_str(), kPluginBegin.data(), kPluginBegin.size()) == 0 &&
               IsSameName(name.c_str() + name.size() - kPluginEnd.size(), kPluginEnd.data());
    });
    return found == program.modules.end() ? nullptr : &*found;
}
