/* No faults: unusual things that the contract allows. Several of them share a library, for each library that is checked
 * takes its time. */
#include "Faults.h"

#include <windows.h>

#include <string.h>

static HWND sPalette;

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

static void AskPerson(Call* call) {
    (void)call;
    MessageBoxW(NULL, L"Which fonts?", L"Font manager", MB_OKCANCEL);
}

static LRESULT CALLBACK PassMessageOn(int code, WPARAM wParam, LPARAM lParam) {
    return CallNextHookEx(NULL, code, wParam, lParam);
}

/* Windows takes its hook away when it ends. */
static DWORD WINAPI HookOwnThread(void* ignored) {
    (void)ignored;
    SetWindowsHookExW(WH_GETMESSAGE, &PassMessageOn, NULL, GetCurrentThreadId());
    return 0;
}

/* Several, which end at the same time. */
static void RunHookedThreads(Call* call) {
    int i;
    (void)call;
    for (i = 0; i < 4; ++i) {
        CloseHandle(CreateThread(NULL, 0, &HookOwnThread, NULL, 0, NULL));
    }
}

/* Stays while the library takes its time: it waits for nobody. */
static void ShowPalette(Call* call) {
    (void)call;
    sPalette = CreateWindowExW(0, L"Static", L"Palette", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, NULL, NULL, NULL, NULL);
}

static void ClosePalette(Call* call) {
    (void)call;
    DestroyWindow(sPalette);
}

/* Longer than a call may take in the test, when a probe's calls are added up. */
static void TakeMoreTime(Call* call) {
    (void)call;
    Sleep(400);
}

const Fault kAllowedOddities[] = {
    {"TakesMoreTime", "GetSettings", &TakeMoreTime},
    {"TellsLength", "HandleOpenExistingDocument", &ReplyTellingLength},
    {"TellsLength", "InvokeResolveDialog", &WriteTextAgain},
    {"TellsLength", "ActivateChosenFonts", &ReadText},
    {"TellsSize", "HandleOpenExistingDocument", &ReplyTellingSize},
    {"TellsSize", "InvokeResolveDialog", &WriteTextAgain},
    {"TellsSize", "ActivateChosenFonts", &ReadText},
    {"TellsLength", "InvokeResolveDialog", &AskPerson},
    {"TellsLength", "InvokeRestrictedFontsDialog", &AskPerson},
    {"TellsLength", "InvokeCommandDialog", &AskPerson},
    {"TellsSize", "InitializePluginCoreInterface", &RunHookedThreads},
    {"TakesMoreTime", "InitializePluginCoreInterface", &ShowPalette},
    {"TakesMoreTime", "TerminatePluginCoreInterface", &ClosePalette},
    {NULL, NULL, NULL},
};
