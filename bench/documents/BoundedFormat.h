// One bounded formatting, as a line of the log needs it.
#pragma once

#include <cstdio>

#include "common/Run.h"
#include "support/Log.h"

namespace bench {

template <class... Arguments>
void FormatLine(const char* format, Arguments... arguments) {
    char line[kLogBufferSize];
    _snprintf_s(line, kLogBufferSize, _TRUNCATE, format, arguments...);
    Keep(line);
}

}  // namespace bench
