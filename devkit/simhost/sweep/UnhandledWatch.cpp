#include "simhost/sweep/UnhandledWatch.h"

#include <cstdarg>
#include <cstddef>
#include <string_view>
#include <utility>

#include "doubles/common/ImportPatch.h"

namespace simhost::sweep {

namespace {

using Formatter = int (*)(char*, std::size_t, std::size_t, const char*, va_list);

Formatter sFormatter = nullptr;
std::int64_t sUnhandled = 0;

int WatchedFormatter(char* buffer, std::size_t size, std::size_t count, const char* format, va_list arguments) {
    sUnhandled += std::string_view(format).starts_with("Unhandled exception") ? 1 : 0;
    return sFormatter(buffer, size, count, format, arguments);
}

}  // namespace

void WatchUnhandled(HMODULE module) {
    if (void* const before = ImportedFunction(module, "_vsnprintf_s")) {
        sFormatter = reinterpret_cast<Formatter>(before);
        ReplaceImport(module, "_vsnprintf_s", AsReplacement(&WatchedFormatter));
    }
}

std::int64_t TakeUnhandled() { return std::exchange(sUnhandled, 0); }

}  // namespace simhost::sweep
