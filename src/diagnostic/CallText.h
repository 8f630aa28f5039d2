// What the log says about a call of the PluginCore. Arguments are told by their types, in the order in which the entry
// takes them; a null pointer as null; of a text, what TextWriter::AppendQuoted leaves of it:
//
//     -> GetMenus("C:\Job\A.ai", buffer "", size 4096)
//     <- GetMenus took 0.214 ms, answered 0, buffer "[{"id":"fonts"...", size 4096
//
// Thread: any.
#pragma once

#include <cstdint>
#include <string_view>
#include <type_traits>

#include "diagnostic/TextWriter.h"
#include "plugincore/PluginCore.h"

void AppendArgument(TextWriter& out, const char* text) noexcept;
// A reply buffer, or text that may be changed: more than is quoted is not read, and every such buffer holds more.
void AppendArgument(TextWriter& out, char* buffer) noexcept;
void AppendArgument(TextWriter& out, const std::uint64_t* size) noexcept;
void AppendArgument(TextWriter& out, const std::uint32_t* value) noexcept;
void AppendArgument(TextWriter& out, const std::uint8_t* flag) noexcept;
void AppendArgument(TextWriter& out, std::uint8_t flag) noexcept;
void AppendArgument(TextWriter& out, std::int32_t number) noexcept;
void AppendArgument(TextWriter& out, PluginCoreMenuCallback callback) noexcept;
// The PlugPlug state, and the context of the callback.
void AppendArgument(TextWriter& out, const void* address) noexcept;

// Also in hexadecimal when it is one of the codes that are written so.
void AppendResult(TextWriter& out, std::int32_t result) noexcept;

inline constexpr std::string_view kCallArrow = "-> ";

// "-> GetMenus(...)"
template <class... Arguments>
void AppendCall(TextWriter& out, const char* name, Arguments... arguments) noexcept {
    out.Append(kCallArrow);
    out.Append(name);
    out.Append("(");
    [[maybe_unused]] const char* before = "";
    ((out.Append(before), AppendArgument(out, arguments), before = ", "), ...);
    out.Append(")");
}

// "GetMenus(...)" of that line.
constexpr std::string_view WithoutArrow(std::string_view line) {
    return line.starts_with(kCallArrow) ? line.substr(kCallArrow.size()) : line;
}

// Whether an entry may write there.
template <class Argument>
constexpr bool kIsOutput = std::is_same_v<Argument, char*> || std::is_same_v<Argument, std::uint64_t*> ||
                           std::is_same_v<Argument, std::uint32_t*> || std::is_same_v<Argument, std::uint8_t*>;

template <class Argument>
void AppendOutput(TextWriter& out, [[maybe_unused]] Argument argument) noexcept {
    if constexpr (kIsOutput<Argument>) {
        out.Append(", ");
        AppendArgument(out, argument);
    }
}

// "0, buffer ..., size 4096": the result, and what the entry may have written.
template <class... Arguments>
void AppendAnswer(TextWriter& out, std::int32_t result, Arguments... arguments) noexcept {
    AppendResult(out, result);
    (AppendOutput(out, arguments), ...);
}
