// The logging call for the native build: the plug-in's own formats with a function of Windows' runtime library. Formats
// as well, so that the sanitizers see what the arguments point to.
#include <cstdarg>
#include <cstdio>

#include "support/Log.h"

void LogMessage(std::int32_t, const char* format, ...) {
    char line[kLogBufferSize];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
}
