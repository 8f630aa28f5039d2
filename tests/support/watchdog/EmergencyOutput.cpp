#include "support/watchdog/EmergencyOutput.h"

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

constexpr int kMostFrames = 64;

// The base that the file asks for; debug information counts from there, wherever the module has been loaded.
std::uint64_t PreferredBase(std::uint64_t loadedAt) {
    const auto* module = reinterpret_cast<const unsigned char*>(loadedAt);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(module);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS64*>(module + dos->e_lfanew);
    return headers->OptionalHeader.ImageBase;
}

void PrintFrame(std::uint64_t address) {
    HMODULE module = nullptr;
    const DWORD byAddress = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!GetModuleHandleExA(byAddress, reinterpret_cast<const char*>(address), &module)) {
        PrintEmergency("  0x%llx\n", static_cast<unsigned long long>(address));
        return;
    }
    char path[MAX_PATH] = "";
    GetModuleFileNameA(module, path, MAX_PATH);
    const char* slash = std::strrchr(path, '\\');
    const auto base = reinterpret_cast<std::uint64_t>(module);
    PrintEmergency("  %s 0x%llx\n", slash != nullptr ? slash + 1 : path,
                   static_cast<unsigned long long>(address - base + PreferredBase(base)));
}

// Sets the registers to those of the caller.
void StepOut(CONTEXT& context) {
    DWORD64 base = 0;
    PRUNTIME_FUNCTION function = RtlLookupFunctionEntry(context.Rip, &base, nullptr);
    if (function == nullptr) {
        // A function without unwind data calls nobody, so its return address is on top of the stack.
        context.Rip = *reinterpret_cast<const DWORD64*>(context.Rsp);
        context.Rsp += sizeof(DWORD64);
        return;
    }
    void* handlerData = nullptr;
    DWORD64 frame = 0;
    RtlVirtualUnwind(UNW_FLAG_NHANDLER, base, context.Rip, function, &context, &handlerData, &frame, nullptr);
}

}  // namespace

void PrintEmergency(const char* format, ...) {
    char text[1024];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof(text), format, arguments);
    va_end(arguments);
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_ERROR_HANDLE), text, static_cast<DWORD>(std::strlen(text)), &written, nullptr);
}

void PrintStackTrace(CONTEXT& context) {
    for (int frame = 0; frame < kMostFrames && context.Rip != 0; ++frame) {
        PrintFrame(context.Rip);
        StepOut(context);
    }
}
