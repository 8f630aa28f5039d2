#include "Faults.h"

#include <windows.h>

#include <stdlib.h>
#include <string.h>
#include <xmmintrin.h>

/* Kept from call to call, as a library should not. */
static const char* sKeptText;
static char* sKeptBuffer;
static PluginCoreMenuCallback sKeptCallback;
static void* sKeptContext;
static PlugPlugState* sKeptState;
static int sStarts;
static int sIsTerminated;

/* ---- Memory of the caller ---- */

static void WriteBehindBuffer(Call* call) {
    if (call->buffer != NULL) {
        call->buffer[*call->size] = 'x';
    }
}

static void WriteInFrontOfBuffer(Call* call) {
    if (call->buffer != NULL) {
        call->buffer[-1] = '\\';
    }
}

static void WriteFlagAsBool(Call* call) { *(BOOL*)(void*)call->flag = TRUE; }

/* As strncpy does it. */
static void FillWithoutZero(Call* call) {
    if (call->buffer != NULL) {
        memset(call->buffer, 'x', (size_t)*call->size);
    }
}

/* In place of a longer text that the entry has written. */
static void ReplaceReply(char* buffer, const char* text) {
    memset(buffer, 0, strlen(buffer));
    memcpy(buffer, text, strlen(text) + 1);
}

static void AnswerInLatin1(Call* call) {
    if (call->buffer != NULL && *call->size > 8) {
        ReplaceReply(call->buffer, "Gr\xF6\xDF" "e");
    }
}

static void WriteBehindText(Call* call) {
    if (call->buffer != NULL && strnlen(call->buffer, (size_t)*call->size) + 1 < *call->size) {
        call->buffer[strlen(call->buffer) + 1] = 'x';
    }
}

static void GrowSize(Call* call) {
    if (call->buffer != NULL) {
        *call->size += 4096;
    }
}

static void WriteToNullBuffer(Call* call) {
    if (call->buffer == NULL) {
        call->buffer[0] = '\0';
    }
}

static void RefuseNullBuffer(Call* call) { call->answer = call->buffer == NULL ? 87 : call->answer; }

static void ReadBehindText(Call* call) {
    static char sCopy[65536];
    memcpy(sCopy, call->path, strlen(call->path) + 64);
}

/* As a search backwards for a separator does it that is not there. */
static void ReadInFrontOfText(Call* call) {
    static volatile char sFirst;
    sFirst = call->path[-1];
    (void)sFirst;
}

static void WriteInFrontOfText(Call* call) { ((char*)call->path)[-1] = '"'; }

/* As strtok does it. */
static void WriteToText(Call* call) {
    char* const separator = strrchr((char*)call->path, '\\');
    if (separator != NULL) {
        *separator = '\0';
    }
}

static void KeepText(Call* call) {
    static volatile char sFirst;
    if (sKeptText != NULL) {
        sFirst = sKeptText[0];
    }
    sKeptText = call->path;
    (void)sFirst;
}

static void KeepBuffer(Call* call) {
    if (sKeptBuffer != NULL) {
        sKeptBuffer[0] = '\0';
    }
    sKeptBuffer = call->buffer;
}

static void FreeText(Call* call) { free((char*)call->report); }

static void ReallocateText(Call* call) {
    static char* volatile sOwn;
    sOwn = realloc((char*)call->report, 4096);
    (void)sOwn;
}

static void ChangeState(Call* call) { call->state->loadExtension = NULL; }

static void KeepState(Call* call) { sKeptState = call->state; }

static void ChangeKeptState(Call* call) {
    (void)call;
    if (sKeptState != NULL) {
        sKeptState->dispatch = NULL;
    }
}

static void AnswerTwo(Call* call) { *call->flag = 2; }

/* ---- Exceptions ---- */

static void Throw(Call* call) {
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

/* ---- Menus ---- */

static void AddWithNullContext(Call* call) { call->callback("lone", "Lone", "Lone", 0, 1, 0, NULL, NULL); }

static void AddWithOwnContext(Call* call) { call->callback("lone", "Lone", "Lone", 0, 1, 0, NULL, &sStarts); }

static void AddWithoutLabel(Call* call) { call->callback("bare", NULL, "Bare", 0, 1, 0, NULL, call->context); }

static void AddWithOddFlag(Call* call) { call->callback("odd", "Odd", "Odd", 255, 1, 0, NULL, call->context); }

static void AddChildFirst(Call* call) {
    call->callback("activate", "Activate", "Activate", 0, 1, 0, "Fonts", call->context);
    call->callback("fonts", "Fonts", "Fonts", 0, 1, 1, NULL, call->context);
}

static void AddTwice(Call* call) { call->callback("activate", "Again", "Again", 0, 1, 0, NULL, call->context); }

static void AddSubMenuTwice(Call* call) {
    call->callback("more", "Fonts", "More", 0, 1, 1, NULL, call->context);
}

static void AddLabelTwice(Call* call) {
    call->callback("about", "About", "About", 0, 1, 0, NULL, call->context);
    call->callback("about-2", "About", "About...", 0, 1, 0, NULL, call->context);
}

static DWORD WINAPI AddOne(void* call) {
    Call* const of = call;
    of->callback("late", "Late", "Late", 0, 1, 0, NULL, of->context);
    return 0;
}

static void AddOnOtherThread(Call* call) {
    const HANDLE thread = CreateThread(NULL, 0, &AddOne, call, 0, NULL);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}

static void KeepCallback(Call* call) {
    sKeptCallback = call->callback;
    sKeptContext = call->context;
}

static void UseKeptCallback(Call* call) {
    (void)call;
    if (sKeptCallback != NULL) {
        sKeptCallback("late", "Late", "Late", 0, 1, 0, NULL, sKeptContext);
        sKeptCallback = NULL;
    }
}

static void Answer(Call* call, const char* text) {
    if (call->buffer != NULL && *call->size > strlen(text)) {
        ReplaceReply(call->buffer, text);
    }
}

static void AnswerCutJson(Call* call) { Answer(call, "[{\"id\":\"fonts\",\"ti"); }

static void AnswerWithoutChild(Call* call) {
    Answer(call, "[{\"id\":\"fonts\",\"title\":\"Fonts\",\"enabled\":true,\"checked\":false}]");
}

static void AnswerWithNumber(Call* call) {
    Answer(call, "[{\"id\":\"fonts\",\"title\":1,\"enabled\":true,\"checked\":false,\"child\":[]}]");
}

static void AnswerIni(Call* call) { Answer(call, "DialogSuppression=1"); }

static void AnswerTrue(Call* call) { Answer(call, "{\"DialogSuppression\":true}"); }

/* ---- Life cycle ---- */

static void RefuseVersion(Call* call) { call->answer = 5; }

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

static void FailSecondStart(Call* call) { call->answer = ++sStarts > 1 ? 5 : call->answer; }

/* ---- Left behind ---- */

static LRESULT CALLBACK PassOn(int code, WPARAM wParam, LPARAM lParam) {
    return CallNextHookEx(NULL, code, wParam, lParam);
}

static void LeaveHook(Call* call) {
    (void)call;
    SetWindowsHookExW(WH_GETMESSAGE, &PassOn, NULL, GetCurrentThreadId());
}

static void LeaveWindow(Call* call) {
    (void)call;
    CreateWindowExW(0, L"Static", L"", 0, 0, 0, 1, 1, HWND_MESSAGE, NULL, NULL, NULL);
}

static DWORD WINAPI Wait(void* ignored) {
    (void)ignored;
    Sleep(INFINITE);
    return 0;
}

static void LeaveThread(Call* call) {
    (void)call;
    CloseHandle(CreateThread(NULL, 0, &Wait, NULL, 0, NULL));
}

static void LeaveManyThreads(Call* call) {
    int i;
    for (i = 0; i < 32; ++i) {
        LeaveThread(call);
    }
}

/* Through no import. */
static void LeaveWindowUnseen(Call* call) {
    typedef HWND(WINAPI * Create)(DWORD, LPCSTR, LPCSTR, DWORD, int, int, int, int, HWND, HMENU, HINSTANCE, LPVOID);
    const FARPROC create = GetProcAddress(GetModuleHandleW(L"user32.dll"), "CreateWindowExA");
    HMODULE self = NULL;
    (void)call;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       (LPCWSTR)(const void*)&sStarts, &self);
    ((Create)(void (*)(void))create)(0, "Static", "", WS_POPUP, 0, 0, 1, 1, NULL, NULL, self, NULL);
}

/* One that ends by itself in the end, should nobody else end it. */
static void LeaveProcess(Call* call) {
    wchar_t line[] = L"ping.exe -n 20 127.0.0.1";
    STARTUPINFOW startup = {.cb = sizeof startup};
    PROCESS_INFORMATION process;
    (void)call;
    if (CreateProcessW(NULL, line, NULL, NULL, FALSE, CREATE_NO_WINDOW, NULL, NULL, &startup, &process)) {
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
}

static void Leak(Call* call) {
    static void* volatile sLost;
    (void)call;
    sLost = malloc(40);
    (void)sLost;
}

static void LeakHandle(Call* call) {
    (void)call;
    CreateEventW(NULL, FALSE, FALSE, NULL);
}

/* ---- What belongs to the host ---- */

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

/* ---- Ends of the process, and waits ---- */

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

static void ShowDialog(Call* call) {
    (void)call;
    MessageBoxW(NULL, L"Sign in?", L"Font manager", MB_OKCANCEL);
}

static void TakeTime(Call* call) {
    (void)call;
    Sleep(120);
}

/* Longer than a call may take in the test, when a probe's calls are added up. */
static void TakeMoreTime(Call* call) {
    (void)call;
    Sleep(400);
}

/* ---- No faults: what the contract allows ---- */

/* With the length of the text in place of its size. */
static void ReplyTellingLength(Call* call) {
    if (call->buffer != NULL && *call->size > strlen("Missing-Font")) {
        strcpy(call->buffer, "Missing-Font");
        *call->size = strlen("Missing-Font");
    }
}

/* The zero is counted. */
static void ReplyTellingSize(Call* call) {
    ReplyTellingLength(call);
    if (call->buffer != NULL && *call->size == strlen("Missing-Font")) {
        ++*call->size;
    }
}

/* Chooses what fits. */
static void WriteTextAgain(Call* call) { memset(call->buffer, 'x', strlen(call->buffer)); }

static void ReadText(Call* call) {
    static volatile size_t sLength;
    sLength = strlen(call->buffer);
    (void)sLength;
}

typedef struct Fault {
    const char* name;
    const char* entry;
    void (*commit)(Call* call);
} Fault;

static const Fault kFaults[] = {
    {"WritesBehindBuffer", "GetMenus", &WriteBehindBuffer},
    {"WritesInFrontOfBuffer", "GetIDForDocument", &WriteInFrontOfBuffer},
    {"WritesFlagAsBool", "PluginIsEnabled", &WriteFlagAsBool},
    {"Unterminated", "GetIDForDocument", &FillWithoutZero},
    {"AnswersInLatin1", "GetIDForDocument", &AnswerInLatin1},
    {"GrowsSize", "HandleOpenExistingDocument", &GrowSize},
    {"WritesToNullBuffer", "HandleOpenExistingDocument", &WriteToNullBuffer},
    {"RefusesNullBuffer", "HandleOpenExistingDocument", &RefuseNullBuffer},
    {"ReadsBehindText", "HandleSaveDocument", &ReadBehindText},
    {"ReadsInFrontOfText", "HandleSaveDocument", &ReadInFrontOfText},
    {"WritesInFrontOfText", "HandleSaveDocument", &WriteInFrontOfText},
    {"WritesToText", "HandleCloseDocument", &WriteToText},
    {"KeepsText", "HandleOpenExistingDocument", &KeepText},
    {"KeepsBuffer", "HandleCreateNewDocument", &KeepBuffer},
    {"FreesText", "HandleSaveDocument", &FreeText},
    {"ReallocatesText", "HandleSaveDocument", &ReallocateText},
    {"ChangesState", "RegisterPlugPlug", &ChangeState},
    {"ChangesStateLater", "RegisterPlugPlug", &KeepState},
    {"ChangesStateLater", "IdleEvent", &ChangeKeptState},
    {"AnswersTwo", "PluginIsEnabled", &AnswerTwo},
    {"WritesBehindText", "GetIDForDocument", &WriteBehindText},
    {"ChangesFolder", "HandleSaveDocument", &ChangeFolder},
    {"ChangesRounding", "HandleSaveDocument", &ChangeRounding},
    {"ChangesErrorMode", "HandleSaveDocument", &ChangeErrorMode},
    {"Throws", "HandleSaveDocument", &Throw},
    {"Raises", "HandleCloseDocument", &Raise},
    {"RaisesToGoOn", "GetIDForDocument", &RaiseToGoOn},
    {"AddsWithNullContext", "CreateMenusFromJSONBuffer", &AddWithNullContext},
    {"AddsWithOwnContext", "CreateMenusFromJSONBuffer", &AddWithOwnContext},
    {"AddsWithoutLabel", "CreateMenusFromJSONBuffer", &AddWithoutLabel},
    {"AddsWithOddFlag", "CreateMenusFromJSONBuffer", &AddWithOddFlag},
    {"ChildrenFirst", "CreateMenusFromJSONBuffer", &AddChildFirst},
    {"AddsTwice", "CreateMenusFromJSONBuffer", &AddTwice},
    {"AddsSubMenuTwice", "CreateMenusFromJSONBuffer", &AddSubMenuTwice},
    {"AddsLabelTwice", "CreateMenusFromJSONBuffer", &AddLabelTwice},
    {"AddsOnOtherThread", "CreateMenusFromJSONBuffer", &AddOnOtherThread},
    {"AddsLate", "CreateMenusFromJSONBuffer", &KeepCallback},
    {"AddsLate", "IdleEvent", &UseKeptCallback},
    {"AnswersCutJson", "GetMenus", &AnswerCutJson},
    {"AnswersWithoutChild", "GetMenus", &AnswerWithoutChild},
    {"AnswersWithNumber", "GetMenus", &AnswerWithNumber},
    {"AnswersIni", "GetSettings", &AnswerIni},
    {"AnswersTrue", "GetSettings", &AnswerTrue},
    {"RefusesVersion", "GetAPIVersion", &RefuseVersion},
    {"SilentAfterTerminate", "TerminatePluginCoreInterface", &NoteTerminated},
    {"SilentAfterTerminate", "InitializePluginCoreInterface", &NoteStarted},
    {"SilentAfterTerminate", "GetSettings", &FailOnceTerminated},
    {"ForgetsPort", "TerminatePluginCoreInterface", &NoteTerminated},
    {"ForgetsPort", "InitializePluginCoreInterface", &NoteStarted},
    {"ForgetsPort", "GetSocketPort", &ForgetPort},
    {"FailsSecondStart", "InitializePluginCoreInterface", &FailSecondStart},
    {"LeavesHook", "InitializePluginCoreInterface", &LeaveHook},
    {"LeavesWindow", "InitializePluginCoreInterface", &LeaveWindow},
    {"LeavesWindowUnseen", "InitializePluginCoreInterface", &LeaveWindowUnseen},
    {"LeavesThread", "InitializePluginCoreInterface", &LeaveThread},
    {"LeavesManyThreads", "InitializePluginCoreInterface", &LeaveManyThreads},
    {"LeavesProcess", "InitializePluginCoreInterface", &LeaveProcess},
    {"Leaks", "IdleEvent", &Leak},
    {"LeaksAtStart", "InitializePluginCoreInterface", &Leak},
    {"LeaksHandle", "IdleEvent", &LeakHandle},
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
    {"ReadsBehindTextSlowly", "HandleSaveDocument", &ReadBehindText},
    {"ReadsBehindTextSlowly", "HandleSaveDocument", &TakeTime},
    {"TakesMoreTime", "GetSettings", &TakeMoreTime},
    {"TellsLength", "HandleOpenExistingDocument", &ReplyTellingLength},
    {"TellsLength", "InvokeResolveDialog", &WriteTextAgain},
    {"TellsLength", "ActivateChosenFonts", &ReadText},
    {"TellsSize", "HandleOpenExistingDocument", &ReplyTellingSize},
    {"TellsSize", "InvokeResolveDialog", &WriteTextAgain},
    {"TellsSize", "ActivateChosenFonts", &ReadText},
};

int HasFault(const char* fault) { return strcmp(kFault, fault) == 0; }

void Commit(const char* entry, Call* call) {
    size_t i;
    for (i = 0; i < sizeof kFaults / sizeof *kFaults; ++i) {
        if (HasFault(kFaults[i].name) && strcmp(kFaults[i].entry, entry) == 0) {
            kFaults[i].commit(call);
        }
    }
}
