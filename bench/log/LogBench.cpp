// A log call of the plug-in beside one bounded formatting of the same text, which is what it is made of.
#include <cstdio>

#include "common/Run.h"
#include "support/Log.h"

void bench::Define(Run& run) {
    constexpr const char* kFormat = "Entering %s('%s')";
    constexpr const char* kOperation = "GetDocumentName";
    constexpr const char* kText = "C:\\Users\\designer\\Documents\\Catalogue\\spread 12-13.ai";
    const auto formatted = [] {
        char line[kLogBufferSize];
        _snprintf_s(line, kLogBufferSize, _TRUNCATE, kFormat, kOperation, kText);
        Keep(line);
    };
    run.Compare("log line", "floor: one bounded formatting",
                {{"this plug-in", [] { LogMessage(kLogEntry, kFormat, kOperation, kText); }},
                 {"floor: one bounded formatting", formatted}});
}
