#include "simhost/watch/CallStack.h"

#include <dbghelp.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cwchar>
#include <map>
#include <utility>

namespace simhost {

namespace {

constexpr std::size_t kMostFrames = 64;
// A thread that is met on its way into Windows or out of it cannot always be walked. The next moment it is somewhere
// else.
constexpr int kMostAttempts = 20;
constexpr DWORD kPauseMilliseconds = 10;
// How far above the stack pointer a return address is looked for when the innermost code tells nothing about itself.
constexpr std::size_t kSlotsToSearch = 64;

STACKFRAME64 FrameOf(const CONTEXT& context) {
    STACKFRAME64 frame{};
    frame.AddrPC = {context.Rip, 0, AddrModeFlat};
    frame.AddrFrame = {context.Rbp, 0, AddrModeFlat};
    frame.AddrStack = {context.Rsp, 0, AddrModeFlat};
    return frame;
}

}  // namespace

// A jump to nowhere, and a function without unwind data that has pushed something (the compiler's own check of the
// stack is one), give the walk nothing to begin with: it begins at the nearest return address on the stack.
bool StackReader::FindFirstKnownFrame(CONTEXT& context, CallStack& stack) const {
    if (SymFunctionTableAccess64(mProcess, context.Rip) != nullptr) {
        return true;
    }
    stack.push_back(context.Rip);
    std::array<std::uint64_t, kSlotsToSearch> slots{};
    SIZE_T bytes = 0;
    ReadProcessMemory(mProcess, reinterpret_cast<const void*>(context.Rsp), slots.data(), sizeof slots, &bytes);
    for (std::size_t i = 0; i < bytes / sizeof slots[0]; ++i) {
        if (mModules.At(slots[i]) != nullptr && SymFunctionTableAccess64(mProcess, slots[i]) != nullptr) {
            context.Rip = slots[i];
            context.Rsp += (i + 1) * sizeof slots[0];
            return true;
        }
    }
    return false;
}

CallStack StackReader::ReadFrom(HANDLE thread) const {
    CONTEXT context{};
    context.ContextFlags = CONTEXT_FULL;
    CallStack stack;
    if (GetThreadContext(thread, &context) == 0 || !FindFirstKnownFrame(context, stack)) {
        return stack;
    }
    STACKFRAME64 frame = FrameOf(context);
    while (stack.size() < kMostFrames &&
           StackWalk64(IMAGE_FILE_MACHINE_AMD64, mProcess, thread, &frame, &context, nullptr, &SymFunctionTableAccess64,
                       &SymGetModuleBase64, nullptr) != 0 &&
           frame.AddrPC.Offset != 0) {
        stack.push_back(frame.AddrPC.Offset);
    }
    return stack;
}

// Every thread begins in the system's first library, and goes on in its second. A walk that ends in the first alone has
// come to a function that Windows calls back, and does not see who called Windows.
bool StackReader::IsWhole(const CallStack& stack) const {
    constexpr std::array kOutermost = {L"ntdll.dll", L"kernel32.dll"};
    const auto isIn = [&](const wchar_t* library, std::uint64_t address) {
        const Module* const module = mModules.At(address);
        return module != nullptr && _wcsicmp(module->path.filename().c_str(), library) == 0;
    };
    return stack.size() == kMostFrames || (stack.size() >= kOutermost.size() &&
                                           std::equal(kOutermost.begin(), kOutermost.end(), stack.rbegin(), isIn));
}

CallStack StackReader::ReadRunning(HANDLE thread) const {
    CallStack longest;
    for (int attempt = 0; attempt < kMostAttempts && !IsWhole(longest); ++attempt) {
        if (attempt != 0) {
            Sleep(kPauseMilliseconds);
        }
        if (SuspendThread(thread) == static_cast<DWORD>(-1)) {
            break;
        }
        CallStack stack = ReadFrom(thread);
        ResumeThread(thread);
        if (IsWhole(stack) || stack.size() > longest.size()) {
            longest = std::move(stack);
        }
    }
    return longest;
}

// Of the system's own frames only what the thread is in, and what was called by others, is of interest. A dialog can
// have dozens of the others inside.
bool StackReader::IsOfInterest(const CallStack& stack, std::size_t i) const {
    const auto isOther = [&](std::size_t at) {
        const Module* const module = mModules.At(stack[at]);
        return module == nullptr || !module->isSystem;
    };
    return i == 0 || isOther(i) || (i + 1 < stack.size() && isOther(i + 1));
}

std::vector<Frame> StackReader::Describe(const CallStack& stack) const {
    std::vector<Frame> frames;
    std::map<const Module*, std::vector<std::size_t>> byModule;
    for (std::size_t i = 0; i < stack.size(); ++i) {
        frames.push_back({stack[i], mModules.At(stack[i]), {}});
        if (IsOfInterest(stack, i)) {
            byModule[frames[i].module].push_back(i);
        }
    }
    for (const auto& [module, indexes] : byModule) {
        if (module == nullptr) {
            continue;
        }
        std::vector<std::uint64_t> addresses;
        for (const std::size_t i : indexes) {
            // Outer frames have the address behind a call, which may be the last instruction of function or line.
            addresses.push_back(stack[i] - (i == 0 ? 0 : 1));
        }
        const std::vector<Symbol> symbols = LookUpSymbols(module->path, module->base, addresses);
        for (std::size_t i = 0; i < indexes.size(); ++i) {
            frames[indexes[i]].symbol = symbols[i];
        }
    }
    return frames;
}

}  // namespace simhost
