#include "simhost/run/CrashGuard.h"

#include <windows.h>

#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "doubles/common/Text.h"

namespace simhost {

namespace {

// Set once, never cleared: a crash can come as long as the process lives.
std::function<void(const std::string&)>& Report() {
    static auto* const sReport = new std::function<void(const std::string&)>;
    return *sReport;
}

[[noreturn]] void EndProcess(const std::string& what) {
    static bool sReporting = false;
    if (!std::exchange(sReporting, true)) {
        Report()(what);
        std::fflush(nullptr);
    }
    TerminateProcess(GetCurrentProcess(), 1);
    std::abort();
}

std::string ModuleAt(const void* address) {
    HMODULE module = nullptr;
    wchar_t path[MAX_PATH] = L"";
    if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                           static_cast<const wchar_t*>(address), &module) == 0 ||
        GetModuleFileNameW(module, path, MAX_PATH) == 0) {
        return "outside all modules";
    }
    const std::string file = Utf8(std::wstring_view(path));
    char offset[32];
    std::snprintf(offset, sizeof offset, " + 0x%llx",
                  static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(address) -
                                                  reinterpret_cast<std::uintptr_t>(module)));
    return "in " + file.substr(file.find_last_of('\\') + 1) + offset;
}

std::string NameOfCode(DWORD code) {
    switch (code) {
        case EXCEPTION_ACCESS_VIOLATION:
            return "access violation";
        case EXCEPTION_STACK_OVERFLOW:
            return "stack overflow";
        case EXCEPTION_ILLEGAL_INSTRUCTION:
            return "illegal instruction";
        case 0xE06D7363:
            return "C++ exception of another compiler";
        case 0x20474343:
            return "C++ exception";
        default:
            return "exception";
    }
}

LONG CALLBACK OnUnhandled(EXCEPTION_POINTERS* pointers) {
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    char code[16];
    std::snprintf(code, sizeof code, " 0x%08lX ", record.ExceptionCode);
    EndProcess(NameOfCode(record.ExceptionCode) + code + ModuleAt(record.ExceptionAddress));
}

void OnAbort(int) { EndProcess("abort() was called"); }

}  // namespace

void InstallCrashGuard(std::function<void(const std::string&)> report) {
    Report() = std::move(report);
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    SetUnhandledExceptionFilter(&OnUnhandled);
    std::signal(SIGABRT, &OnAbort);
}

}  // namespace simhost
