#include "simhost/contract/CodeAddress.h"

#include <cstdint>
#include <cstdio>
#include <filesystem>

#include "doubles/common/Text.h"
#include "simhost/watch/Symbols.h"

namespace simhost::contract {

namespace {

constexpr int kFrames = 24;

HMODULE ModuleOf(const void* address) {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       static_cast<const wchar_t*>(address), &module);
    return module;
}

// Empty for no module.
std::filesystem::path PathOfModule(HMODULE module) {
    wchar_t path[MAX_PATH] = L"";
    return module == nullptr || GetModuleFileNameW(module, path, MAX_PATH) == 0 ? L"" : path;
}

// To the caller's frame. False where the stack ends.
bool Unwind(CONTEXT& context) {
    DWORD64 base = 0;
    RUNTIME_FUNCTION* const function = RtlLookupFunctionEntry(context.Rip, &base, nullptr);
    if (function == nullptr) {
        // A function without a frame of its own: the return address lies on top.
        context.Rip = *reinterpret_cast<const DWORD64*>(context.Rsp);
        context.Rsp += sizeof(DWORD64);
        return context.Rip != 0;
    }
    void* handlerData = nullptr;
    DWORD64 frame = 0;
    RtlVirtualUnwind(UNW_FLAG_NHANDLER, base, context.Rip, function, &context, &handlerData, &frame, nullptr);
    return context.Rip != 0;
}

}  // namespace

std::string FileNameOfModule(HMODULE module) { return Utf8(PathOfModule(module).filename().wstring()); }

std::string DescribeCode(const void* address) {
    const HMODULE module = ModuleOf(address);
    const std::string file = FileNameOfModule(module);
    if (file.empty()) {
        return "code outside all modules";
    }
    const auto base = reinterpret_cast<std::uint64_t>(module);
    const Symbol symbol = LookUpSymbols(PathOfModule(module), base, {reinterpret_cast<std::uint64_t>(address)}).front();
    if (!symbol.function.empty()) {
        return InWords(symbol, file);
    }
    char offset[32];
    std::snprintf(offset, sizeof offset, " + 0x%llx",
                  static_cast<unsigned long long>(reinterpret_cast<std::uint64_t>(address) - base));
    return file + offset;
}

const void* PlaceWithin(HMODULE library, const CONTEXT& context) {
    CONTEXT frame = context;
    for (int i = 0; i < kFrames; ++i) {
        const auto* const address = reinterpret_cast<const void*>(frame.Rip);
        if (library != nullptr && ModuleOf(address) == library) {
            return address;
        }
        if (!Unwind(frame)) {
            break;
        }
    }
    return reinterpret_cast<const void*>(context.Rip);
}

}  // namespace simhost::contract
