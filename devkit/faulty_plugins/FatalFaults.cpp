#include "FatalFaults.h"

#include "HostStateFaults.h"

#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>

#include "doubles/common/CompilerSupport.h"

namespace {

// Not known to the compiler, which would complain.
volatile std::uintptr_t sNowhere = 16;
volatile std::size_t sLength = 0;

bool sHangsWhenUnloaded = false;

void StartProgram(std::wstring commandLine) {
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process{};
    if (CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process) !=
        0) {
        CloseHandle(process.hThread);
        CloseHandle(process.hProcess);
    }
}

void HandleMessagesForEver() {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

// Pressing OK is no answer.
INT_PTR CALLBACK IgnoreAnswers(HWND dialog, UINT message, WPARAM, LPARAM) {
    if (message == WM_INITDIALOG) {
        SetWindowTextW(dialog, L"A question");
        CreateWindowExW(0, L"STATIC", L"Do you like it?", WS_CHILD | WS_VISIBLE, 10, 10, 100, 20, dialog, nullptr,
                        nullptr, nullptr);
    }
    return message == WM_INITDIALOG ? TRUE : FALSE;
}

DWORD WINAPI WaitForEver(void*) {
    Sleep(INFINITE);
    return 0;
}

int Recurse(int depth) {
    volatile char room[4096];
    room[0] = static_cast<char>(depth);
    // Not the last call, which the compiler would turn into a jump.
    return sNowhere == 0 ? depth : Recurse(depth + 1) + room[0];
}

}  // namespace

void AccessViolation() { *reinterpret_cast<volatile int*>(sNowhere) = 1; }

void PassBadPointer() { sLength = std::strlen(reinterpret_cast<const char*>(sNowhere)); }

void JumpNowhere() {
    sNowhere = 0;
    reinterpret_cast<void (*)()>(sNowhere)();
    // So that the call is no jump.
    sNowhere = 1;
}

void OverflowStack() { sLength = static_cast<std::size_t>(Recurse(0)); }

void ThrowException() { throw std::runtime_error("not for the host"); }

void Abort() { std::abort(); }

void FailFast() {
    constexpr unsigned kFatalAppExit = 7;
    QUORVEL_FAIL_FAST(kFatalAppExit);
}

void Hang() { Sleep(INFINITE); }

void Spin() {
    while (sNowhere != 0) {
    }
}

void HangWhenUnloaded() { sHangsWhenUnloaded = true; }

void EndProcess() { TerminateProcess(GetCurrentProcess(), 0); }

void ExitThroughRuntime() { std::exit(3); }

void ExitThroughWindows() { ExitProcess(0xE0000001); }

void EndMainThread() { ExitThread(7); }

void LetAnotherEndProcess() {
    StartProgram(L"taskkill.exe /F /PID " + std::to_wstring(GetCurrentProcessId()));
    Sleep(INFINITE);
}

void AskQuestion() {
    // Followed by no menu, the standard class, and no title.
    struct {
        DLGTEMPLATE head{WS_POPUP | WS_CAPTION | WS_VISIBLE, 0, 0, 20, 20, 160, 60};
        WORD rest[3] = {};
    } const dialog;
    DialogBoxIndirectParamW(GetModuleHandleW(nullptr), &dialog.head, nullptr, &IgnoreAnswers, 0);
}

void ShowOwnDialog() {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = &DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"QuorvelOwnDialog";
    RegisterClassW(&windowClass);
    CreateWindowExW(0, windowClass.lpszClassName, L"Sign in", WS_POPUP | WS_CAPTION | WS_VISIBLE, 60, 60, 300, 100,
                    nullptr, nullptr, windowClass.hInstance, nullptr);
    HandleMessagesForEver();
}

// A program that the scenario lays out beside the host's.
void LeaveProcess() { StartProgram(L"Lumet.exe"); }

void LeaveThread() { CloseHandle(CreateThread(nullptr, 0, &WaitForEver, nullptr, 0, nullptr)); }

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_DETACH) {
        OnUnload();
        if (sHangsWhenUnloaded) {
            Hang();
        }
    }
    return TRUE;
}
