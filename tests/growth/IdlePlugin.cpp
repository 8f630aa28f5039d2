// A plug-in that does nothing, against which the shipped one is measured. Of the caller "Leak" it leaves behind one of
// what the selector names: each counter must notice it.
#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

DWORD WINAPI Wait(void*) {
    Sleep(INFINITE);
    return 0;
}

LRESULT CALLBACK PassOn(int code, WPARAM wParam, LPARAM lParam) {
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void* volatile sBlock = nullptr;

// A block of the C runtime, as a plug-in in C leaks it.
// NOLINTBEGIN(cppcoreguidelines-no-malloc)
void LeakBlock() { sBlock = std::malloc(100); }
// A block that is there already becomes larger.
void LeakByte() {
    static std::size_t size = 1'000;
    static void* volatile block = nullptr;
    block = std::realloc(block, ++size);
}
// NOLINTEND(cppcoreguidelines-no-malloc)
void LeakHandle() { CreateEventW(nullptr, FALSE, FALSE, nullptr); }
void LeakWindow() { CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr); }
void LeakHook() { SetWindowsHookExW(WH_CALLWNDPROC, &PassOn, nullptr, GetCurrentThreadId()); }
// Its handle is closed: only the thread is left. It waits in this library's code, which stays loaded for that.
void LeakThread() { CloseHandle(CreateThread(nullptr, 0, &Wait, nullptr, 0, nullptr)); }

struct Row {
    const char* what;
    void (*leak)();
};
constexpr Row kLeaks[] = {
    {"blocks", &LeakBlock},   {"bytes", &LeakByte}, {"handles", &LeakHandle},
    {"windows", &LeakWindow}, {"hooks", &LeakHook}, {"threads", &LeakThread},
};

}  // namespace

extern "C" __declspec(dllexport) std::int32_t PluginMain(const char* caller, const char* selector, void*) {
    for (const Row& row : kLeaks) {
        if (std::strcmp(caller, "Leak") == 0 && std::strcmp(selector, row.what) == 0) {
            row.leak();
        }
    }
    return 0;
}
