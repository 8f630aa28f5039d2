#include "support/Log.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "support/LogSink.h"

namespace {

using LogBuffer = char[kLogBufferSize];

// The secure formatter with _TRUNCATE cuts at 8191 characters and always terminates.
void FormatInto(LogBuffer& buffer, const char* format, va_list arguments) {
    buffer[0] = '\0';
    _vsnprintf_s(buffer, kLogBufferSize, _TRUNCATE, format, arguments);
}

}  // namespace

void LogMessage(std::int32_t level, const char* format, ...) {
    LogBuffer buffer;
    va_list arguments;
    va_start(arguments, format);
    FormatInto(buffer, format, arguments);
    va_end(arguments);
    WriteLogLine(level, buffer);
}

std::int32_t LogLine(const char* format, ...) {
    LogBuffer buffer;
    va_list arguments;
    va_start(arguments, format);
    FormatInto(buffer, format, arguments);
    va_end(arguments);

    std::size_t length = std::strlen(buffer);
    if (length < kLogBufferSize - 2 && (length == 0 || buffer[length - 1] != '\n')) {
        buffer[length] = '\n';
        buffer[++length] = '\0';
    }
    return static_cast<std::int32_t>(length);
}
