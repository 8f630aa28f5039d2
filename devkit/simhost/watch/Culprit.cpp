#include "simhost/watch/Culprit.h"

#include <cstdio>
#include <string_view>
#include <utility>

namespace simhost {

namespace {

// What a name of the system's inside is called outside.
constexpr std::pair<std::string_view, std::string_view> kUsualNames[] = {
    {"RtlExitUserProcess", "ExitProcess"},
    {"RtlExitUserThread", "ExitThread"},
    {"NtTerminateProcess", "TerminateProcess"},
    {"ZwTerminateProcess", "TerminateProcess"},
};

std::string UsualName(const std::string& function) {
    for (const auto& [inside, outside] : kUsualNames) {
        if (function == inside) {
            return std::string(outside);
        }
    }
    return function;
}

std::string Hexadecimal(std::uint64_t number) {
    char text[24];
    std::snprintf(text, sizeof text, "0x%llx", static_cast<unsigned long long>(number));
    return text;
}

std::string PlaceInModule(const Frame& frame) {
    if (frame.module == nullptr) {
        return Hexadecimal(frame.address) + ", outside all modules";
    }
    return frame.module->Name() + "+" + Hexadecimal(frame.address - frame.module->base) +
           (frame.module->isLoaded ? "" : ", which was unloaded");
}

bool IsSystem(const Frame& frame) { return frame.module != nullptr && frame.module->isSystem; }

// Code of the compiler's own that is linked into every module: it has no lines, and often no name.
bool IsRuntime(const Frame& frame) {
    return frame.symbol.function.empty() || frame.symbol.function.starts_with("__") ||
           frame.symbol.function.starts_with("_Unwind") || frame.symbol.function.starts_with("std::");
}

// The frame itself, or the first of the same module behind it that is not the compiler's.
Frame SkipRuntime(const std::vector<Frame>& stack, std::size_t i) {
    const Frame& first = stack[i];
    for (; i < stack.size() && stack[i].module == first.module; ++i) {
        if (!IsRuntime(stack[i])) {
            return stack[i];
        }
    }
    return first;
}

}  // namespace

Culprit FindCulprit(const std::vector<Frame>& stack, const std::filesystem::path& program) {
    Culprit culprit;
    for (std::size_t i = 0; i < stack.size(); ++i) {
        const Frame& frame = stack[i];
        if (i == 0) {
            culprit.top = frame;
        }
        // A jump to nowhere was made by somebody.
        if (IsSystem(frame) || (frame.module == nullptr && i + 1 < stack.size())) {
            continue;
        }
        if (!culprit.code) {
            culprit.code = SkipRuntime(stack, i);
            culprit.called = i == 0 ? "" : UsualName(stack[i - 1].symbol.function);
        } else if (culprit.code->module != frame.module) {
            culprit.guest = SkipRuntime(stack, i);
        }
        if (frame.module == nullptr || frame.module->path.filename() != program.filename()) {
            break;
        }
    }
    return culprit;
}

std::string ModuleOf(const Culprit& culprit) {
    const std::optional<Frame>& frame = culprit.guest ? culprit.guest : culprit.code;
    return frame && frame->module != nullptr ? frame->module->Name() : "";
}

std::string InWords(const Frame& frame) {
    if (frame.symbol.function.empty()) {
        return PlaceInModule(frame);
    }
    return InWords(frame.symbol, frame.module == nullptr ? "no module" : frame.module->Name());
}

std::string InWords(const Culprit& culprit) {
    if (!culprit.top) {
        return "at an unknown place";
    }
    if (!culprit.code) {
        return "at " + PlaceInModule(*culprit.top);
    }
    std::string words = "in " + InWords(*culprit.code);
    if (!culprit.called.empty()) {
        words += ", which called " + culprit.called;
    }
    if (culprit.guest) {
        words += ", called by " + InWords(*culprit.guest);
    }
    return culprit.code->symbol.function.empty() && culprit.code->address == culprit.top->address
               ? words
               : words + "; at " + PlaceInModule(*culprit.top);
}

}  // namespace simhost
