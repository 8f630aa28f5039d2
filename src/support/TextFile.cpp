#include "support/TextFile.h"

#include <cstdio>

#include "support/UniqueHandle.h"

namespace {

struct FileTraits {
    using Handle = std::FILE*;
    static Handle None() noexcept { return nullptr; }
    // Nothing was written that could be lost.
    static void Close(Handle handle) noexcept { static_cast<void>(std::fclose(handle)); }
};
using File = UniqueHandle<FileTraits>;

std::optional<std::string> ReadAll(const File& file) {
    if (!file) {
        return std::nullopt;
    }
    std::string text;
    char piece[4096];
    for (std::size_t size = sizeof piece; size == sizeof piece;) {
        size = std::fread(piece, 1, sizeof piece, file.Get());
        text.append(piece, size);
    }
    if (std::ferror(file.Get()) != 0) {
        text.erase(text.rfind('\n') + 1);
    }
    return text;
}

}  // namespace

std::optional<std::string> ReadTextFile(const wchar_t* path) { return ReadAll(File(_wfopen(path, L"r"))); }

std::optional<std::string> ReadTextFile(const char* path) { return ReadAll(File(std::fopen(path, "r"))); }
