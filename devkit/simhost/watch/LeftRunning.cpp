#include "simhost/watch/LeftRunning.h"

#include <algorithm>
#include <string>
#include <utility>

#include "simhost/watch/Culprit.h"

namespace simhost {

namespace {

// Processes that the host started may be ending already.
constexpr ULONGLONG kTimeToEndMilliseconds = 500;
constexpr DWORD kPauseMilliseconds = 20;

// Neither the system's nor the host's own.
bool IsGuest(std::uint64_t address, const Modules& modules, const std::filesystem::path& program) {
    const Module* const module = modules.At(address);
    return module != nullptr && !module->isSystem && module->path.filename() != program.filename();
}

// The function that the thread was created for; 0 when Windows does not tell. The documented call for a thread of
// another process is this one alone.
std::uint64_t StartAddressOf(HANDLE thread) {
    using QueryInformationThread = LONG(WINAPI*)(HANDLE, int, void*, ULONG, ULONG*);
    constexpr int kWin32StartAddress = 9;
    const auto query = reinterpret_cast<QueryInformationThread>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQueryInformationThread")));
    void* address = nullptr;
    if (query == nullptr || query(thread, kWin32StartAddress, &address, sizeof address, nullptr) != 0) {
        return 0;
    }
    return reinterpret_cast<std::uintptr_t>(address);
}

// For a thread that has not got to its function yet, or whose stack cannot be read; one that has come back from it is
// ending.
CallStack WithStart(CallStack stack, HANDLE thread) {
    stack.push_back(StartAddressOf(thread));
    return stack;
}

}  // namespace

std::vector<Violation> ThreadsLeft(const std::map<DWORD, HANDLE>& threads, DWORD ending, const StackReader& stacks,
                                   const Modules& modules, const std::filesystem::path& program) {
    // Threads that wait at the same place are told together: names take their time.
    std::map<CallStack, int> left;
    for (const auto& [id, thread] : threads) {
        if (id == ending) {
            continue;
        }
        const auto hasGuest = [&](const CallStack& stack) {
            return std::any_of(stack.begin(), stack.end(),
                               [&](std::uint64_t address) { return IsGuest(address, modules, program); });
        };
        CallStack stack = stacks.ReadRunning(thread);
        if (!stacks.IsWhole(stack) && !hasGuest(stack)) {
            stack = WithStart(std::move(stack), thread);
        }
        if (hasGuest(stack)) {
            ++left[stack];
        }
    }
    std::vector<Violation> findings;
    for (const auto& [stack, count] : left) {
        const Culprit culprit = FindCulprit(stacks.Describe(stack), program);
        findings.push_back({Rule::kThreadLeft, count,
                            (count == 1 ? "a thread" : std::to_string(count) + " threads") +
                                " still ran when the host quit, " + InWords(culprit),
                            ModuleOf(culprit)});
    }
    return findings;
}

std::vector<Violation> ProcessesLeft(const Job& job) {
    const ULONGLONG end = GetTickCount64() + kTimeToEndMilliseconds;
    std::vector<Job::Member> members = job.Members();
    while (!members.empty() && GetTickCount64() < end) {
        Sleep(kPauseMilliseconds);
        members = job.Members();
    }
    std::vector<Violation> findings;
    findings.reserve(members.size());
    for (const Job::Member& member : members) {
        findings.push_back(
            {Rule::kProcessLeft, 1, member.program + " was started during the run and still ran after it"});
    }
    return findings;
}

}  // namespace simhost
