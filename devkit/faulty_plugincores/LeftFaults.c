/* What is left behind, at once or more with each call. */
#include "Faults.h"

#include <windows.h>

#include <stdlib.h>

static LRESULT CALLBACK PassOn(int code, WPARAM wParam, LPARAM lParam) {
    return CallNextHookEx(NULL, code, wParam, lParam);
}

static void LeaveHook(Call* call) {
    (void)call;
    SetWindowsHookExW(WH_GETMESSAGE, &PassOn, NULL, GetCurrentThreadId());
}

static void CALLBACK Ignore(HWINEVENTHOOK hook, DWORD event, HWND window, LONG object, LONG child, DWORD thread,
                            DWORD time) {
    (void)hook, (void)event, (void)window, (void)object, (void)child, (void)thread, (void)time;
}

static void LeaveEventHook(Call* call) {
    (void)call;
    SetWinEventHook(EVENT_OBJECT_FOCUS, EVENT_OBJECT_FOCUS, NULL, &Ignore, GetCurrentProcessId(), 0,
                    WINEVENT_OUTOFCONTEXT);
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
                       (LPCWSTR)(const void*)&kFault, &self);
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

/* Blocks that take pages. */
static void LeakMuch(Call* call) {
    static void* volatile sLost;
    (void)call;
    sLost = malloc(8192);
    (void)sLost;
}

/* One block, ever larger. */
static void GrowBlock(Call* call) {
    static char* volatile sLog;
    static size_t sLength;
    (void)call;
    sLength += 16;
    sLog = realloc(sLog, sLength);
}

static void TakePages(Call* call) {
    (void)call;
    VirtualAlloc(NULL, 1, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
}

static void LeakHandle(Call* call) {
    (void)call;
    CreateEventW(NULL, FALSE, FALSE, NULL);
}

const Fault kLeftFaults[] = {
    {"LeavesHook", "InitializePluginCoreInterface", &LeaveHook},
    {"LeavesHook", "InitializePluginCoreInterface", &LeaveEventHook},
    {"LeavesHook", "IdleEvent", &LeaveHook},
    {"LeavesWindow", "InitializePluginCoreInterface", &LeaveWindow},
    {"LeavesWindowUnseen", "InitializePluginCoreInterface", &LeaveWindowUnseen},
    {"LeavesThread", "InitializePluginCoreInterface", &LeaveThread},
    {"LeavesManyThreads", "InitializePluginCoreInterface", &LeaveManyThreads},
    {"LeavesProcess", "InitializePluginCoreInterface", &LeaveProcess},
    {"Leaks", "IdleEvent", &Leak},
    {"Leaks", "HandleCreateNewDocument", &LeakMuch},
    {"Leaks", "CreateMenusFromJSONBuffer", &Leak},
    {"Leaks", "InvokeResolveDialog", &Leak},
    {"Leaks", "RegisterPlugPlug", &Leak},
    {"Leaks", "ProcessPanelMessages", &GrowBlock},
    {"Leaks", "GetSocketPort", &TakePages},
    {"LeaksAtStart", "InitializePluginCoreInterface", &Leak},
    {"LeaksHandle", "IdleEvent", &LeakHandle},
    {NULL, NULL, NULL},
};
