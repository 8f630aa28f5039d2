#include "simhost/watch/EndTraps.h"

#include <algorithm>
#include <utility>

namespace simhost {

namespace {

constexpr unsigned char kBreakpoint = 0xCC;
constexpr DWORD kSingleStepFlag = 0x100;

bool Always(HANDLE, const CONTEXT&) { return true; }

// The first argument is a handle of the watched process, null for all threads but the calling one.
bool IsOwnProcess(HANDLE process, const CONTEXT& context) {
    const auto handle = reinterpret_cast<HANDLE>(context.Rcx);
    if (handle == nullptr || handle == GetCurrentProcess()) {
        return true;
    }
    HANDLE own = nullptr;
    if (DuplicateHandle(process, handle, GetCurrentProcess(), &own, PROCESS_QUERY_LIMITED_INFORMATION, FALSE, 0) == 0) {
        return false;
    }
    const bool isOwn = GetProcessId(own) == GetProcessId(process);
    CloseHandle(own);
    return isOwn;
}

EndAttempt EndOfProcess(const CONTEXT& context) { return {EndKind::kProcess, static_cast<std::uint32_t>(context.Rcx)}; }
EndAttempt Termination(const CONTEXT& context) { return {EndKind::kProcess, static_cast<std::uint32_t>(context.Rdx)}; }
EndAttempt EndOfThread(const CONTEXT& context) { return {EndKind::kThread, static_cast<std::uint32_t>(context.Rcx)}; }

// The library lies at the same address in all processes.
void* Address(const char* function) {
    return reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), function));
}

}  // namespace

void EndTraps::Set() {
    mTraps = {{Address("RtlExitUserProcess"), 0, &Always, &EndOfProcess},
              {Address("NtTerminateProcess"), 0, &IsOwnProcess, &Termination},
              {Address("RtlExitUserThread"), 0, &Always, &EndOfThread}};
    for (Trap& trap : mTraps) {
        ReadProcessMemory(mProcess, trap.address, &trap.original, 1, nullptr);
        Write(trap, kBreakpoint);
    }
}

void EndTraps::Remove() {
    for (const Trap& trap : mTraps) {
        Write(trap, trap.original);
    }
    mTraps.clear();
}

void EndTraps::Write(const Trap& trap, unsigned char byte) const {
    WriteProcessMemory(mProcess, trap.address, &byte, 1, nullptr);
    FlushInstructionCache(mProcess, trap.address, 1);
}

bool EndTraps::Handles(const DEBUG_EVENT& event, HANDLE thread) {
    const EXCEPTION_RECORD& record = event.u.Exception.ExceptionRecord;
    if (record.ExceptionCode == EXCEPTION_SINGLE_STEP) {
        return HasStepped(event.dwThreadId);
    }
    const auto trap =
        std::find_if(mTraps.begin(), mTraps.end(), [&](const Trap& t) { return t.address == record.ExceptionAddress; });
    if (record.ExceptionCode != EXCEPTION_BREAKPOINT || trap == mTraps.end()) {
        return false;
    }
    CONTEXT context{};
    context.ContextFlags = CONTEXT_FULL;
    GetThreadContext(thread, &context);
    mAttempt = trap->concerns(mProcess, context) ? std::optional(trap->read(context)) : std::nullopt;
    // Back to the instruction that the breakpoint replaced, and stop again behind it.
    context.Rip = reinterpret_cast<DWORD64>(trap->address);
    context.EFlags |= kSingleStepFlag;
    SetThreadContext(thread, &context);
    Write(*trap, trap->original);
    mStepping[event.dwThreadId] = trap->address;
    return true;
}

bool EndTraps::HasStepped(DWORD thread) {
    const auto stepping = mStepping.find(thread);
    if (stepping == mStepping.end()) {
        return false;
    }
    void* const address = stepping->second;
    mStepping.erase(stepping);
    const bool isStillOut =
        std::any_of(mStepping.begin(), mStepping.end(), [&](const auto& other) { return other.second == address; });
    for (const Trap& trap : mTraps) {
        if (trap.address == address && !isStillOut) {
            Write(trap, kBreakpoint);
        }
    }
    return true;
}

std::optional<EndAttempt> EndTraps::TakeAttempt() { return std::exchange(mAttempt, std::nullopt); }

}  // namespace simhost
