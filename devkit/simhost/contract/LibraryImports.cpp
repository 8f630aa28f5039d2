#include "simhost/contract/LibraryImports.h"

#include <process.h>

#include <algorithm>
#include <mutex>

#include "doubles/common/ImportPatch.h"
#include "doubles/common/Text.h"
#include "doubles/common/Thread.h"
#include "simhost/contract/CodeAddress.h"
#include "simhost/contract/GuardedMemory.h"

#ifdef _MSC_VER
#include <intrin.h>
#define CALLER_ADDRESS _ReturnAddress()
#else
#define CALLER_ADDRESS __builtin_return_address(0)
#endif

namespace simhost::contract {

namespace {

constexpr DWORD kMomentMilliseconds = 500;

struct Made {
    ClauseId clause;
    HANDLE handle;  // of a hook, a window, a thread or a process
    std::string what;
};

Mutex sMutex;

std::vector<Made>& Things() {
    static auto* const sThings = new std::vector<Made>;
    return *sThings;
}

void Note(ClauseId clause, HANDLE handle, const std::string& what) {
    const std::lock_guard lock(sMutex);
    Things().push_back({clause, handle, what});
}

void Forget(HANDLE handle) {
    const std::lock_guard lock(sMutex);
    std::erase_if(Things(), [&](const Made& made) { return made.handle == handle; });
}

// Handles of our own, which the library cannot close.
void NoteWaitable(ClauseId clause, HANDLE theirs, const std::string& what) {
    HANDLE ours = nullptr;
    if (DuplicateHandle(GetCurrentProcess(), theirs, GetCurrentProcess(), &ours, SYNCHRONIZE, FALSE, 0) != 0) {
        Note(clause, ours, what);
    }
}

// The functions that were replaced, as the library had them: which C runtime is behind them is its own affair.
void(__cdecl* sFree)(void*) = nullptr;
BOOL(WINAPI* sHeapFree)(HANDLE, DWORD, LPVOID) = nullptr;
HLOCAL(WINAPI* sLocalFree)(HLOCAL) = nullptr;
HGLOBAL(WINAPI* sGlobalFree)(HGLOBAL) = nullptr;
void(WINAPI* sTaskMemFree)(LPVOID) = nullptr;
uintptr_t(__cdecl* sBeginThreadEx)(void*, unsigned, unsigned(__stdcall*)(void*), void*, unsigned, unsigned*) = nullptr;
uintptr_t(__cdecl* sBeginThread)(void(__cdecl*)(void*), unsigned, void*) = nullptr;

void __cdecl WatchedFree(void* memory) {
    if (!GuardedMemory::NoteFreed(memory, CALLER_ADDRESS)) {
        sFree(memory);
    }
}

BOOL WINAPI WatchedHeapFree(HANDLE heap, DWORD flags, LPVOID memory) {
    return GuardedMemory::NoteFreed(memory, CALLER_ADDRESS) ? TRUE : sHeapFree(heap, flags, memory);
}

HLOCAL WINAPI WatchedLocalFree(HLOCAL memory) {
    return GuardedMemory::NoteFreed(memory, CALLER_ADDRESS) ? nullptr : sLocalFree(memory);
}

HGLOBAL WINAPI WatchedGlobalFree(HGLOBAL memory) {
    return GuardedMemory::NoteFreed(memory, CALLER_ADDRESS) ? nullptr : sGlobalFree(memory);
}

void WINAPI WatchedTaskMemFree(LPVOID memory) {
    if (!GuardedMemory::NoteFreed(memory, CALLER_ADDRESS)) {
        sTaskMemFree(memory);
    }
}

HHOOK NoteHook(HHOOK hook, int type) {
    if (hook != nullptr) {
        Note(ClauseId::kHookLeft, hook, "a hook of type " + std::to_string(type));
    }
    return hook;
}

HHOOK WINAPI WatchedSetWindowsHookExW(int type, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
    return NoteHook(SetWindowsHookExW(type, procedure, module, thread), type);
}

HHOOK WINAPI WatchedSetWindowsHookExA(int type, HOOKPROC procedure, HINSTANCE module, DWORD thread) {
    return NoteHook(SetWindowsHookExA(type, procedure, module, thread), type);
}

BOOL WINAPI WatchedUnhookWindowsHookEx(HHOOK hook) {
    const BOOL done = UnhookWindowsHookEx(hook);
    if (done != 0) {
        Forget(hook);
    }
    return done;
}

HWND NoteWindow(HWND window) {
    if (window != nullptr) {
        wchar_t name[64] = L"";
        GetClassNameW(window, name, static_cast<int>(std::size(name)));
        Note(ClauseId::kWindowLeft, window, "a window of the class \"" + Utf8(std::wstring_view(name)) + "\"");
    }
    return window;
}

HWND WINAPI WatchedCreateWindowExW(DWORD exStyle, LPCWSTR className, LPCWSTR name, DWORD style, int x, int y, int width,
                                   int height, HWND parent, HMENU menu, HINSTANCE instance, LPVOID parameter) {
    return NoteWindow(
        CreateWindowExW(exStyle, className, name, style, x, y, width, height, parent, menu, instance, parameter));
}

HWND WINAPI WatchedCreateWindowExA(DWORD exStyle, LPCSTR className, LPCSTR name, DWORD style, int x, int y, int width,
                                   int height, HWND parent, HMENU menu, HINSTANCE instance, LPVOID parameter) {
    return NoteWindow(
        CreateWindowExA(exStyle, className, name, style, x, y, width, height, parent, menu, instance, parameter));
}

std::string ThreadIn(const void* code) { return "a thread that runs " + DescribeCode(code); }

HANDLE WINAPI WatchedCreateThread(LPSECURITY_ATTRIBUTES security, SIZE_T stack, LPTHREAD_START_ROUTINE start,
                                  LPVOID parameter, DWORD flags, LPDWORD id) {
    const HANDLE thread = CreateThread(security, stack, start, parameter, flags, id);
    if (thread != nullptr) {
        NoteWaitable(ClauseId::kThreadLeft, thread, ThreadIn(reinterpret_cast<const void*>(start)));
    }
    return thread;
}

uintptr_t __cdecl WatchedBeginThreadEx(void* security, unsigned stack, unsigned(__stdcall* start)(void*),
                                       void* parameter, unsigned flags, unsigned* id) {
    const uintptr_t thread = sBeginThreadEx(security, stack, start, parameter, flags, id);
    if (thread != 0) {
        NoteWaitable(ClauseId::kThreadLeft, reinterpret_cast<HANDLE>(thread),
                     ThreadIn(reinterpret_cast<const void*>(start)));
    }
    return thread;
}

// Its handle may be closed before we see it: the thread does that when it ends.
uintptr_t __cdecl WatchedBeginThread(void(__cdecl* start)(void*), unsigned stack, void* parameter) {
    const uintptr_t thread = sBeginThread(start, stack, parameter);
    if (thread != static_cast<uintptr_t>(-1)) {
        NoteWaitable(ClauseId::kThreadLeft, reinterpret_cast<HANDLE>(thread),
                     ThreadIn(reinterpret_cast<const void*>(start)));
    }
    return thread;
}

BOOL WINAPI WatchedCreateProcessW(LPCWSTR program, LPWSTR line, LPSECURITY_ATTRIBUTES process,
                                  LPSECURITY_ATTRIBUTES thread, BOOL inherit, DWORD flags, LPVOID environment,
                                  LPCWSTR folder, LPSTARTUPINFOW startup, LPPROCESS_INFORMATION information) {
    const BOOL started =
        CreateProcessW(program, line, process, thread, inherit, flags, environment, folder, startup, information);
    if (started != 0) {
        NoteWaitable(ClauseId::kProcessLeft, information->hProcess,
                     "the process " + Utf8(std::wstring_view(line != nullptr ? line : program)));
    }
    return started;
}

BOOL WINAPI WatchedCreateProcessA(LPCSTR program, LPSTR line, LPSECURITY_ATTRIBUTES process,
                                  LPSECURITY_ATTRIBUTES thread, BOOL inherit, DWORD flags, LPVOID environment,
                                  LPCSTR folder, LPSTARTUPINFOA startup, LPPROCESS_INFORMATION information) {
    const BOOL started =
        CreateProcessA(program, line, process, thread, inherit, flags, environment, folder, startup, information);
    if (started != 0) {
        NoteWaitable(ClauseId::kProcessLeft, information->hProcess,
                     std::string("the process ") + (line != nullptr ? line : program));
    }
    return started;
}

// A library need not import the function.
template <class Function>
void Replace(HMODULE library, const char* name, Function** original, Function* replacement) {
    if (void* const imported = ImportedFunction(library, name)) {
        *original = reinterpret_cast<Function*>(imported);
        ReplaceImport(library, name, AsReplacement(replacement));
    }
}

bool IsThere(const Made& made) {
    switch (made.clause) {
        case ClauseId::kWindowLeft:
            return IsWindow(static_cast<HWND>(made.handle)) != 0;
        case ClauseId::kThreadLeft:
        case ClauseId::kProcessLeft:
            return WaitForSingleObject(made.handle, kMomentMilliseconds) == WAIT_TIMEOUT;
        default:
            return true;
    }
}

}  // namespace

void WatchLibrary(HMODULE library) {
    Replace(library, "free", &sFree, &WatchedFree);
    Replace(library, "HeapFree", &sHeapFree, &WatchedHeapFree);
    Replace(library, "LocalFree", &sLocalFree, &WatchedLocalFree);
    Replace(library, "GlobalFree", &sGlobalFree, &WatchedGlobalFree);
    Replace(library, "CoTaskMemFree", &sTaskMemFree, &WatchedTaskMemFree);
    Replace(library, "_beginthreadex", &sBeginThreadEx, &WatchedBeginThreadEx);
    Replace(library, "_beginthread", &sBeginThread, &WatchedBeginThread);
    ReplaceImport(library, "SetWindowsHookExW", AsReplacement(WatchedSetWindowsHookExW));
    ReplaceImport(library, "SetWindowsHookExA", AsReplacement(WatchedSetWindowsHookExA));
    ReplaceImport(library, "UnhookWindowsHookEx", AsReplacement(WatchedUnhookWindowsHookEx));
    ReplaceImport(library, "CreateWindowExW", AsReplacement(WatchedCreateWindowExW));
    ReplaceImport(library, "CreateWindowExA", AsReplacement(WatchedCreateWindowExA));
    ReplaceImport(library, "CreateThread", AsReplacement(WatchedCreateThread));
    ReplaceImport(library, "CreateProcessW", AsReplacement(WatchedCreateProcessW));
    ReplaceImport(library, "CreateProcessA", AsReplacement(WatchedCreateProcessA));
}

std::vector<Leftover> Leftovers() {
    std::vector<Made> things;
    {
        const std::lock_guard lock(sMutex);
        things = Things();
    }
    std::vector<Leftover> left;
    for (const Made& made : things) {
        if (IsThere(made)) {
            left.push_back({made.clause, made.what});
        }
    }
    return left;
}

}  // namespace simhost::contract
