/* How a call ends that does not return, or not in time. */
#include "Faults.h"

#include <windows.h>

#include <stdlib.h>
#include <string.h>

void Throw(Call* call) {
    const ULONG_PTR parameters[4] = {0x19930520, 0, 0, 0};
    (void)call;
    RaiseException(0xE06D7363, EXCEPTION_NONCONTINUABLE, 4, parameters);
}

/* As runtime libraries of other languages do it, each with a code of its own. */
static void Raise(Call* call) {
    (void)call;
    RaiseException(0x0EEDFADE, EXCEPTION_NONCONTINUABLE, 0, NULL);
}

static void RaiseToGoOn(Call* call) {
    (void)call;
    RaiseException(0xE0434352, 0, 0, NULL);
}

static void Crash(Call* call) {
    static volatile uintptr_t sNowhere = 16;
    (void)call;
    *(volatile int*)sNowhere = 1;
}

static void OverflowStack(Call* call) {
    volatile char frame[4096];
    frame[0] = (char)call->answer;
    if (call->answer == kPluginCoreSuccess) {
        OverflowStack(call);
    }
    call->answer = frame[0];
}

static void CopyIntoShortBuffer(Call* call) {
    volatile size_t length = strlen(call->path);
    if (length > MAX_PATH) {
        Crash(call);
    }
}

static void Hang(Call* call) {
    (void)call;
    Sleep(INFINITE);
}

static void Exit(Call* call) {
    (void)call;
    ExitProcess(0);
}

static void CallExit(Call* call) {
    (void)call;
    exit(3);
}

static void Terminate(Call* call) {
    (void)call;
    TerminateProcess(GetCurrentProcess(), 0);
}

static void Abort(Call* call) {
    (void)call;
    abort();
}

/* What a broken stack guard does. */
static void FailFast(Call* call) {
    (void)call;
    RaiseFailFastException(NULL, NULL, 0);
}

/* Works for some time when a person has answered, who takes some time for it. */
/* Goes on working when a person took long over it, so that a test can tell whose time that was. */
static void ShowDialog(Call* call) {
    const ULONGLONG began = GetTickCount64();
    (void)call;
    MessageBoxW(NULL, L"Sign in?", L"Font manager", MB_OKCANCEL);
    Sleep(GetTickCount64() - began > 4000 ? 2000 : 0);
}

static void TakeTime(Call* call) {
    (void)call;
    Sleep(120);
}

const Fault kEndFaults[] = {
    {"Throws", "HandleSaveDocument", &Throw},
    {"Raises", "HandleCloseDocument", &Raise},
    {"RaisesToGoOn", "GetIDForDocument", &RaiseToGoOn},
    {"Crashes", "HandleOpenExistingDocument", &Crash},
    {"CrashesWithLongPath", "HandleOpenExistingDocument", &CopyIntoShortBuffer},
    {"OverflowsStack", "HandleOpenExistingDocument", &OverflowStack},
    {"Hangs", "HandleOpenExistingDocument", &Hang},
    {"Exits", "HandleOpenExistingDocument", &Exit},
    {"CallsExit", "HandleOpenExistingDocument", &CallExit},
    {"Terminates", "HandleOpenExistingDocument", &Terminate},
    {"Aborts", "HandleOpenExistingDocument", &Abort},
    {"FailsFast", "HandleOpenExistingDocument", &FailFast},
    {"ShowsDialog", "HandleOpenExistingDocument", &ShowDialog},
    {"TakesTime", "HandleSaveDocument", &TakeTime},
    {"ReadsBehindTextSlowly", "HandleSaveDocument", &TakeTime},
    {NULL, NULL, NULL},
};
