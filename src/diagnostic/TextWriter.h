// Writes text into memory that the caller gives: the log takes none of its own, so that it also works when there is
// none left. What does not fit is left out; the text always ends with a zero. Thread: any.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "support/CompilerSupport.h"

class TextWriter {
  public:
    // `memory` must hold one character at least.
    explicit TextWriter(std::span<char> memory) noexcept;

    std::string_view Text() const noexcept { return {mMemory.data(), mLength}; }
    // Lifetime: of the memory.
    const char* Terminated() const noexcept { return mMemory.data(); }

    void Append(std::string_view text) noexcept;
    void Append(char character, std::size_t count) noexcept;
    // Narrow, like printf.
    void AppendFormat(const char* format, ...) noexcept QUORVEL_PRINTF_FORMAT(2, 3);
    void AppendNumber(std::uint64_t number, int base = 10) noexcept;
    // Becomes UTF-8.
    void Append(std::wstring_view text) noexcept;

    // The text in quotation marks, on one line, and after some `kQuotedSize` bytes, never within a character, cut: then
    // how many bytes there are in all follows. Null has no quotation marks.
    void AppendQuoted(const char* text) noexcept;
    // The same for memory that may lack a zero: not more than `size` bytes are read, and no length is told of what was
    // cut.
    void AppendQuoted(const char* text, std::size_t size) noexcept;

    // Control characters are escaped: "\n" for a line feed, "<07>" for a bell.
    void AppendOnOneLine(std::string_view text) noexcept;

  private:
    std::span<char> mMemory;
    std::size_t mLength = 0;
};

constexpr std::size_t kQuotedSize = 200;

// `text` without the last character of it when that is cut short.
std::string_view WithoutCutCharacter(std::string_view text) noexcept;
