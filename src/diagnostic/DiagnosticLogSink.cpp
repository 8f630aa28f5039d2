#include <windows.h>

#include <cstdint>

#include "diagnostic/DiagnosticLog.h"
#include "support/LogSink.h"

namespace {

// Frames between this file's function and the operation that logs: its own, and LogMessage.
constexpr DWORD kFramesBelowOperation = 2;

}  // namespace

// Between the operation and this function stands LogMessage alone, always the same and with a frame of one size: the
// place of a variable here is as good as that of the operation's frame.
void WriteLogLine(std::int32_t level, const char* text) noexcept {
    const volatile char here = 0;
    void* caller = nullptr;
    if (level > 0) {
        RtlCaptureStackBackTrace(kFramesBelowOperation, 1, &caller, nullptr);
    }
    TheDiagnosticLog().Line(level, text,
                            {reinterpret_cast<std::uintptr_t>(&here), reinterpret_cast<std::uintptr_t>(caller)});
}

void EndLog(bool processEnds) noexcept { TheDiagnosticLog().End(processEnds); }
