#include "support/watchdog/CrashReport.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>

#include "doubles/common/Thread.h"
#include "support/watchdog/EmergencyOutput.h"

namespace {

// Enough for the crashed thread to hand its report over after its stack has overflowed.
constexpr ULONG kStackKeptForReport = 16 * 1024;

// Both are set before the first test and live as long as the process.
HANDLE sCrashHappened = nullptr;
EXCEPTION_POINTERS* sException = nullptr;  // set by the crashed thread, which then waits

void PrintRunningTest() {
    if (const testing::TestInfo* const test = testing::UnitTest::GetInstance()->current_test_info()) {
        PrintEmergency("crash in %s.%s\n", test->test_suite_name(), test->name());
    }
}

void PrintCrashAndEnd() {
    WaitForSingleObject(sCrashHappened, INFINITE);
    PrintRunningTest();
    const EXCEPTION_RECORD& record = *sException->ExceptionRecord;
    PrintEmergency("crash: exception 0x%08lx at %p; stack (addr2line -Cfie <file> <address>):\n", record.ExceptionCode,
                   record.ExceptionAddress);
    PrintStackTrace(*sException->ContextRecord);
    TerminateProcess(GetCurrentProcess(), kCrashExitCode);
}

// The report is printed by another thread: the stack of this one may be used up.
LONG WINAPI HandOver(EXCEPTION_POINTERS* exception) {
    sException = exception;
    SetEvent(sCrashHappened);
    Sleep(INFINITE);
    return EXCEPTION_EXECUTE_HANDLER;
}

// abort() raises this before it ends the process with code 3.
void NameAbortedTest(int /*signal*/) { PrintRunningTest(); }

}  // namespace

void ReportCrashes() {
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    // abort() prints its reason instead of showing it in a window.
    _set_error_mode(_OUT_TO_STDERR);
    std::signal(SIGABRT, NameAbortedTest);
    ULONG kept = kStackKeptForReport;
    SetThreadStackGuarantee(&kept);
    sCrashHappened = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    Thread(PrintCrashAndEnd).Detach();
    SetUnhandledExceptionFilter(HandOver);
}
