#include "simhost/contract/LibraryImports.h"

#include <process.h>

#include <optional>
#include <string>
#include <tuple>
#include <type_traits>

#include "doubles/common/Text.h"
#include "simhost/contract/FreeWatch.h"
#include "simhost/contract/MadeThings.h"
#include "simhost/contract/ReplacedImport.h"

namespace simhost::contract {

namespace {

// The C runtime's, as the library had them.
uintptr_t(__cdecl* sBeginThreadEx)(void*, unsigned, unsigned(__stdcall*)(void*), void*, unsigned, unsigned*) = nullptr;
uintptr_t(__cdecl* sBeginThread)(void(__cdecl*)(void*), unsigned, void*) = nullptr;

HHOOK Noted(HHOOK hook, int type, DWORD thread) {
    if (hook != nullptr) {
        NoteHook(hook, type, thread);
    }
    return hook;
}

HHOOK WINAPI WatchedSetWindowsHookExW(int type, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
    return Noted(SetWindowsHookExW(type, procedure, module, thread), type, thread);
}

HHOOK WINAPI WatchedSetWindowsHookExA(int type, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
    return Noted(SetWindowsHookExA(type, procedure, module, thread), type, thread);
}

BOOL WINAPI WatchedUnhookWindowsHookEx(HHOOK hook) {
    const BOOL done = UnhookWindowsHookEx(hook);
    if (done != 0) {
        ForgetHook(hook);
    }
    return done;
}

HWINEVENTHOOK WINAPI WatchedSetWinEventHook(DWORD first, DWORD last, HMODULE module, WINEVENTPROC procedure,
                                            DWORD process, DWORD thread, DWORD flags) {
    const HWINEVENTHOOK hook = SetWinEventHook(first, last, module, procedure, process, thread, flags);
    if (hook != nullptr) {
        NoteHook(hook, std::nullopt, thread);
    }
    return hook;
}

BOOL WINAPI WatchedUnhookWinEvent(HWINEVENTHOOK hook) {
    const BOOL done = UnhookWinEvent(hook);
    if (done != 0) {
        ForgetHook(hook);
    }
    return done;
}

// Of both kinds of texts: the type of the first text says which function was meant.
template <class Text, class... Others>
HWND WINAPI WatchedCreateWindowEx(DWORD exStyle, const Text* className, Others... others) {
    HWND window = nullptr;
    if constexpr (std::is_same_v<Text, wchar_t>) {
        window = CreateWindowExW(exStyle, className, others...);
    } else {
        window = CreateWindowExA(exStyle, className, others...);
    }
    if (window != nullptr) {
        NoteWindow(window);
    }
    return window;
}

template <class Text, class... Others>
BOOL WINAPI WatchedCreateProcess(const Text* program, Text* line, Others... others) {
    BOOL isStarted = FALSE;
    std::string command;
    if constexpr (std::is_same_v<Text, wchar_t>) {
        command = Utf8(std::wstring_view(line != nullptr ? line : program));
        isStarted = CreateProcessW(program, line, others...);
    } else {
        command = line != nullptr ? line : program;
        isStarted = CreateProcessA(program, line, others...);
    }
    if (isStarted != 0) {
        NoteProcess(std::get<sizeof...(Others) - 1>(std::tuple(others...))->hProcess, command);
    }
    return isStarted;
}

template <class Function>
const void* AsCode(Function* function) {
    return reinterpret_cast<const void*>(function);
}

HANDLE WINAPI WatchedCreateThread(LPSECURITY_ATTRIBUTES security, SIZE_T stack, LPTHREAD_START_ROUTINE start,
                                  LPVOID parameter, DWORD flags, LPDWORD id) {
    const HANDLE thread = CreateThread(security, stack, start, parameter, flags, id);
    if (thread != nullptr) {
        NoteThread(thread, AsCode(start));
    }
    return thread;
}

uintptr_t __cdecl WatchedBeginThreadEx(void* security, unsigned stack, unsigned(__stdcall* start)(void*),
                                       void* parameter, unsigned flags, unsigned* id) {
    const uintptr_t thread = sBeginThreadEx(security, stack, start, parameter, flags, id);
    if (thread != 0) {
        NoteThread(reinterpret_cast<HANDLE>(thread), AsCode(start));
    }
    return thread;
}

// Its handle may be closed before we see it: the thread does that when it ends.
uintptr_t __cdecl WatchedBeginThread(void(__cdecl* start)(void*), unsigned stack, void* parameter) {
    const uintptr_t thread = sBeginThread(start, stack, parameter);
    if (thread != static_cast<uintptr_t>(-1)) {
        NoteThread(reinterpret_cast<HANDLE>(thread), AsCode(start));
    }
    return thread;
}

// With the signature of the function that it replaces.
template <class Function>
void Replace(HMODULE library, const char* name, std::type_identity_t<Function>* replacement, Function*) {
    ReplaceImport(library, name, AsReplacement(replacement));
}

}  // namespace

void WatchLibrary(HMODULE library) {
    WatchFrees(library);
    ReplaceKept(library, "_beginthreadex", &sBeginThreadEx, &WatchedBeginThreadEx);
    ReplaceKept(library, "_beginthread", &sBeginThread, &WatchedBeginThread);
    Replace(library, "SetWindowsHookExW", &WatchedSetWindowsHookExW, &SetWindowsHookExW);
    Replace(library, "SetWindowsHookExA", &WatchedSetWindowsHookExA, &SetWindowsHookExA);
    Replace(library, "UnhookWindowsHookEx", &WatchedUnhookWindowsHookEx, &UnhookWindowsHookEx);
    Replace(library, "SetWinEventHook", &WatchedSetWinEventHook, &SetWinEventHook);
    Replace(library, "UnhookWinEvent", &WatchedUnhookWinEvent, &UnhookWinEvent);
    Replace(library, "CreateWindowExW", &WatchedCreateWindowEx, &CreateWindowExW);
    Replace(library, "CreateWindowExA", &WatchedCreateWindowEx, &CreateWindowExA);
    Replace(library, "CreateThread", &WatchedCreateThread, &CreateThread);
    Replace(library, "CreateProcessW", &WatchedCreateProcess, &CreateProcessW);
    Replace(library, "CreateProcessA", &WatchedCreateProcess, &CreateProcessA);
}

}  // namespace simhost::contract
