/* Start and end of the library, and what belongs to the host. */
#include "Faults.h"

#include <windows.h>

#include <xmmintrin.h>

static int sStarts;
static int sIsTerminated;

/* A code like any other. */
static void RefuseVersion(Call* call) { call->answer = -1; }

static void NoteTerminated(Call* call) {
    (void)call;
    sIsTerminated = 1;
}

static void NoteStarted(Call* call) {
    (void)call;
    sIsTerminated = 0;
}

static void FailOnceTerminated(Call* call) { call->answer = sIsTerminated ? 6 : call->answer; }

static void ForgetPort(Call* call) { *call->port = sIsTerminated ? 0 : *call->port; }

static void ThrowOnceTerminated(Call* call) {
    if (sIsTerminated) {
        Throw(call);
    }
}

static void FailSecondStart(Call* call) { call->answer = ++sStarts > 1 ? 5 : call->answer; }

static void AnswerOtherwiseAgain(Call* call) {
    if (sStarts > 1) {
        Answer(call, "[]");
    }
}

static void ChangeFolder(Call* call) {
    (void)call;
    SetCurrentDirectoryW(L"C:\\");
}

static void ChangeRounding(Call* call) {
    (void)call;
    _mm_setcsr(_mm_getcsr() ^ _MM_ROUND_TOWARD_ZERO);
}

static void ChangeErrorMode(Call* call) {
    (void)call;
    SetErrorMode(GetErrorMode() ^ SEM_NOOPENFILEERRORBOX);
}

const Fault kLifeFaults[] = {
    {"ChangesFolder", "HandleSaveDocument", &ChangeFolder},
    {"ChangesRounding", "HandleSaveDocument", &ChangeRounding},
    {"ChangesErrorMode", "HandleSaveDocument", &ChangeErrorMode},
    {"RefusesVersion", "GetAPIVersion", &RefuseVersion},
    {"SilentAfterTerminate", "TerminatePluginCoreInterface", &NoteTerminated},
    {"SilentAfterTerminate", "InitializePluginCoreInterface", &NoteStarted},
    {"SilentAfterTerminate", "GetSettings", &FailOnceTerminated},
    {"ForgetsPort", "TerminatePluginCoreInterface", &NoteTerminated},
    {"ForgetsPort", "InitializePluginCoreInterface", &NoteStarted},
    {"ForgetsPort", "GetSocketPort", &ForgetPort},
    {"ThrowsAfterTerminate", "TerminatePluginCoreInterface", &NoteTerminated},
    {"ThrowsAfterTerminate", "InitializePluginCoreInterface", &NoteStarted},
    {"ThrowsAfterTerminate", "IdleEvent", &ThrowOnceTerminated},
    {"ThrowsAfterTerminate", "ProcessPanelMessages", &ThrowOnceTerminated},
    {"ThrowsAfterTerminate", "GetMenus", &ThrowOnceTerminated},
    {"ThrowsAfterTerminate", "HandleMenuSelection", &ThrowOnceTerminated},
    {"ThrowsAfterTerminate", "RegisterPlugPlug", &ThrowOnceTerminated},
    {"FailsSecondStart", "InitializePluginCoreInterface", &FailSecondStart},
    {"FailsSecondStart", "GetMenus", &AnswerOtherwiseAgain},
    {NULL, NULL, NULL},
};
