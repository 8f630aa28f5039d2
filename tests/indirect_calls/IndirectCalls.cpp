#include "indirect_calls/IndirectCalls.h"

#include <cstdint>

namespace {

using Code = const std::uint8_t*;

constexpr DWORD kTrapFlag = 0x100;

Code sModuleBegin = nullptr;
Code sModuleEnd = nullptr;
int sCalls = 0;

bool IsInModule(Code code) { return code >= sModuleBegin && code < sModuleEnd; }

// One breakpoint at a time: at the function's first instruction, then where a call out of the module returns to.
Code sBreakpoint = nullptr;
std::uint8_t sUnderBreakpoint = 0;

void WriteCode(Code where, std::uint8_t byte) {
    WriteProcessMemory(GetCurrentProcess(), const_cast<std::uint8_t*>(where), &byte, 1, nullptr);
}

void SetBreakpoint(Code where) {
    constexpr std::uint8_t kInt3 = 0xCC;
    sBreakpoint = where;
    sUnderBreakpoint = *where;
    WriteCode(where, kInt3);
}

// 0xFF with 2 in the middle of the byte behind it is a call through a pointer, with 4 a jump; a prefix may stand
// before.
bool IsIndirectCall(Code code) {
    if ((code[0] & 0xF0) == 0x40) {
        ++code;
    }
    const int operation = (code[1] >> 3) & 7;
    return code[0] == 0xFF && (operation == 2 || operation == 4);
}

void OnBreakpoint(CONTEXT& context) {
    WriteCode(sBreakpoint, sUnderBreakpoint);
    context.Rip = reinterpret_cast<DWORD64>(sBreakpoint);
    context.EFlags |= kTrapFlag;
    sCalls += IsIndirectCall(sBreakpoint) ? 1 : 0;
}

void OnStep(CONTEXT& context) {
    const auto code = reinterpret_cast<Code>(context.Rip);
    if (IsInModule(code)) {
        sCalls += IsIndirectCall(code) ? 1 : 0;
        context.EFlags |= kTrapFlag;
        return;
    }
    context.EFlags &= ~kTrapFlag;
    // Behind a call out of the module; the function itself has returned when that is not where it came from.
    if (const Code caller = *reinterpret_cast<const Code*>(context.Rsp); IsInModule(caller)) {
        SetBreakpoint(caller);
    }
}

LONG CALLBACK OnException(EXCEPTION_POINTERS* exception) {
    const EXCEPTION_RECORD& record = *exception->ExceptionRecord;
    if (record.ExceptionCode == static_cast<DWORD>(EXCEPTION_BREAKPOINT) && record.ExceptionAddress == sBreakpoint) {
        OnBreakpoint(*exception->ContextRecord);
    } else if (record.ExceptionCode == static_cast<DWORD>(EXCEPTION_SINGLE_STEP)) {
        OnStep(*exception->ContextRecord);
    } else {
        return EXCEPTION_CONTINUE_SEARCH;
    }
    return EXCEPTION_CONTINUE_EXECUTION;
}

}  // namespace

int IndirectCallsOf(HMODULE module, const void* function, const std::function<void()>& work) {
    sModuleBegin = reinterpret_cast<Code>(module);
    const auto& dos = *reinterpret_cast<const IMAGE_DOS_HEADER*>(sModuleBegin);
    const auto& headers = *reinterpret_cast<const IMAGE_NT_HEADERS*>(sModuleBegin + dos.e_lfanew);
    sModuleEnd = sModuleBegin + headers.OptionalHeader.SizeOfImage;
    sCalls = 0;
    void* const handler = AddVectoredExceptionHandler(1, OnException);
    SetBreakpoint(static_cast<Code>(function));
    work();
    RemoveVectoredExceptionHandler(handler);
    return sCalls;
}
