#include "diagnostic/CallText.h"

namespace {

// "size 4096" or "size null"
template <class Number>
void AppendNumberAt(TextWriter& out, const char* name, const Number* number) {
    out.Append(name);
    if (number == nullptr) {
        out.Append(" null");
    } else {
        out.Append(" ");
        out.AppendNumber(*number);
    }
}

}  // namespace

void AppendArgument(TextWriter& out, const char* text) noexcept { out.AppendQuoted(text); }

void AppendArgument(TextWriter& out, char* buffer) noexcept {
    out.Append("buffer ");
    if (buffer == nullptr) {
        out.Append("null");
    } else {
        out.AppendQuoted(buffer, kQuotedSize + 1);
    }
}

void AppendArgument(TextWriter& out, const std::uint64_t* size) noexcept { AppendNumberAt(out, "size", size); }

void AppendArgument(TextWriter& out, const std::uint32_t* value) noexcept { AppendNumberAt(out, "value", value); }

void AppendArgument(TextWriter& out, const std::uint8_t* flag) noexcept { AppendNumberAt(out, "flag", flag); }

void AppendArgument(TextWriter& out, std::uint8_t flag) noexcept {
    out.AppendFormat("%u", static_cast<unsigned>(flag));
}

void AppendArgument(TextWriter& out, std::int32_t number) noexcept { out.AppendFormat("%d", static_cast<int>(number)); }

void AppendArgument(TextWriter& out, PluginCoreMenuCallback callback) noexcept {
    out.Append("callback ");
    AppendArgument(out, reinterpret_cast<const void*>(callback));
}

void AppendArgument(TextWriter& out, const void* address) noexcept {
    if (address == nullptr) {
        out.Append("null");
    } else {
        out.Append("0x");
        out.AppendNumber(reinterpret_cast<std::uintptr_t>(address), 16);
    }
}

void AppendResult(TextWriter& out, std::int32_t result) noexcept {
    constexpr std::int32_t kGreatestCount = 0xFFFF;
    out.AppendFormat("%d", static_cast<int>(result));
    if (result > kGreatestCount || result < -kGreatestCount) {
        out.AppendFormat(" (0x%08x)", static_cast<unsigned>(result));
    }
}
