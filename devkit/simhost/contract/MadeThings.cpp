#include "simhost/contract/MadeThings.h"

#include <algorithm>
#include <array>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

#include "doubles/common/Text.h"
#include "doubles/common/Thread.h"
#include "simhost/contract/CodeAddress.h"
#include "support/KernelHandle.h"

namespace simhost::contract {

namespace {

constexpr ULONGLONG kMomentMilliseconds = 500;

struct HookThread {
    DWORD id = 0;  // 0 for none
    std::shared_ptr<KernelHandle> handle;
};

// Windows takes a hook away when one of its threads ends. Each costs neither handle nor block of memory: what a library
// takes with each call is counted in the same process.
struct MadeHook {
    HANDLE hook;
    std::optional<int> type;
    std::array<HookThread, 2> threads;  // the one that made it, and the one whose messages it is for
};

struct MadeWindow {
    HWND window;
    std::string what;
};

// A thread or a process.
struct Runner {
    ClauseId clause;
    KernelHandle handle;      // of our own, which the library cannot close
    const void* start;        // of a thread; named only when it is left: that takes its time
    std::string commandLine;  // of a process
};

// Never destroyed: a library may make and end things as long as the process lives.
struct Made {
    Mutex mutex;
    std::vector<MadeHook> hooks;
    std::vector<MadeWindow> windows;
    std::vector<Runner> runners;
};

Made& TheMade() {
    static auto* const sMade = new Made;
    return *sMade;
}

bool HasEnded(const KernelHandle& handle, DWORD milliseconds) {
    return WaitForSingleObject(handle.Get(), milliseconds) == WAIT_OBJECT_0;
}

bool IsGone(const MadeHook& hook) {
    return std::any_of(hook.threads.begin(), hook.threads.end(),
                       [](const HookThread& thread) { return thread.handle && HasEnded(*thread.handle, 0); });
}

// The one handle that all hooks of a thread share. Those of `hooks` still run, so none has the id of an earlier one.
HookThread ThreadOfHook(DWORD id, const std::vector<MadeHook>& hooks) {
    for (const MadeHook& hook : hooks) {
        for (const HookThread& thread : hook.threads) {
            if (thread.id == id) {
                return thread;
            }
        }
    }
    const HANDLE handle = id == 0 ? nullptr : OpenThread(SYNCHRONIZE, FALSE, id);
    return handle == nullptr ? HookThread{} : HookThread{id, std::make_shared<KernelHandle>(handle)};
}

std::string Describe(const MadeHook& hook) {
    return hook.type ? "a hook of type " + std::to_string(*hook.type) : "a hook for events of windows";
}

// A library may start any number one after the other: those that have ended are forgotten now and then.
void ForgetEnded(std::vector<Runner>& runners) {
    static std::size_t sEnough = 64;
    if (runners.size() >= sEnough) {
        std::erase_if(runners, [](const Runner& other) { return HasEnded(other.handle, 0); });
        sEnough = std::max<std::size_t>(64, 2 * runners.size());
    }
}

void Add(ClauseId clause, HANDLE theirs, const void* start, const std::string& commandLine) {
    HANDLE ours = nullptr;
    if (DuplicateHandle(GetCurrentProcess(), theirs, GetCurrentProcess(), &ours, SYNCHRONIZE, FALSE, 0) == 0) {
        return;
    }
    Runner runner{clause, KernelHandle(ours), start, commandLine};
    Made& made = TheMade();
    const std::lock_guard lock(made.mutex);
    ForgetEnded(made.runners);
    made.runners.push_back(std::move(runner));
}

std::string Describe(HWND window) {
    wchar_t name[64] = L"";
    GetClassNameW(window, name, static_cast<int>(std::size(name)));
    return "a window of the class \"" + Utf8(std::wstring_view(name)) + "\"";
}

// Threads that began at the same place are told together.
void AddRunners(const std::vector<Runner>& runners, std::vector<Leftover>& left) {
    std::map<const void*, int> threads;
    for (const Runner& runner : runners) {
        if (runner.clause == ClauseId::kThreadLeft) {
            ++threads[runner.start];
        } else {
            left.push_back({runner.clause, "the process " + runner.commandLine});
        }
    }
    for (const auto& [start, count] : threads) {
        const std::string who = count == 1 ? "a thread that runs " : std::to_string(count) + " threads that run ";
        left.push_back({ClauseId::kThreadLeft, who + DescribeCode(start)});
    }
}

bool IsWindowOf(HMODULE library, HWND window) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    const auto module = reinterpret_cast<LONG_PTR>(library);
    return process == GetCurrentProcessId() &&
           (GetWindowLongPtrW(window, GWLP_HINSTANCE) == module ||
            static_cast<LONG_PTR>(GetClassLongPtrW(window, GCLP_HMODULE)) == module);
}

// Made in whatever way, on whatever thread.
std::vector<HWND> WindowsOf(HMODULE library) {
    std::vector<HWND> windows;
    // Those for messages alone have a parent of their own.
    for (const HWND parent : {HWND{nullptr}, HWND_MESSAGE}) {
        HWND window = nullptr;
        while ((window = FindWindowExW(parent, window, nullptr, nullptr)) != nullptr) {
            if (IsWindowOf(library, window)) {
                windows.push_back(window);
            }
        }
    }
    return windows;
}

void AddWindows(HMODULE library, const std::vector<MadeWindow>& made, std::vector<Leftover>& left) {
    for (const MadeWindow& window : made) {
        if (IsWindow(window.window) != 0) {
            left.push_back({ClauseId::kWindowLeft, window.what});
        }
    }
    for (const HWND window : WindowsOf(library)) {
        const bool isKnown =
            std::any_of(made.begin(), made.end(), [&](const MadeWindow& m) { return m.window == window; });
        if (!isKnown) {
            left.push_back({ClauseId::kWindowLeft, Describe(window)});
        }
    }
}

}  // namespace

void NoteHook(HANDLE hook, std::optional<int> type, DWORD watchedThread) {
    const DWORD maker = GetCurrentThreadId();
    Made& made = TheMade();
    const std::lock_guard lock(made.mutex);
    std::erase_if(made.hooks, &IsGone);
    const HookThread watched = watchedThread == maker ? HookThread{} : ThreadOfHook(watchedThread, made.hooks);
    made.hooks.push_back({hook, type, {ThreadOfHook(maker, made.hooks), watched}});
}

void ForgetHook(HANDLE hook) {
    Made& made = TheMade();
    const std::lock_guard lock(made.mutex);
    std::erase_if(made.hooks, [&](const MadeHook& other) { return other.hook == hook; });
}

void NoteWindow(HWND window) {
    MadeWindow noted{window, Describe(window)};
    Made& made = TheMade();
    const std::lock_guard lock(made.mutex);
    std::erase_if(made.windows, [](const MadeWindow& other) { return IsWindow(other.window) == 0; });
    made.windows.push_back(std::move(noted));
}

void NoteThread(HANDLE thread, const void* start) { Add(ClauseId::kThreadLeft, thread, start, ""); }

void NoteProcess(HANDLE process, const std::string& commandLine) {
    Add(ClauseId::kProcessLeft, process, nullptr, commandLine);
}

std::vector<Leftover> Leftovers(HMODULE library) {
    const ULONGLONG deadline = GetTickCount64() + kMomentMilliseconds;
    Made& made = TheMade();
    std::vector<Runner> runners;
    std::vector<MadeWindow> windows;
    std::vector<Leftover> left;
    {
        const std::lock_guard lock(made.mutex);
        windows = made.windows;
        runners = std::exchange(made.runners, {});
    }
    AddWindows(library, windows, left);
    std::erase_if(runners, [&](const Runner& runner) {
        const ULONGLONG now = GetTickCount64();
        return HasEnded(runner.handle, now < deadline ? static_cast<DWORD>(deadline - now) : 0);
    });
    AddRunners(runners, left);
    const std::lock_guard lock(made.mutex);
    // Now that the threads which are ending have ended.
    std::erase_if(made.hooks, &IsGone);
    for (const MadeHook& hook : made.hooks) {
        left.push_back({ClauseId::kHookLeft, Describe(hook)});
    }
    std::move(runners.begin(), runners.end(), std::back_inserter(made.runners));
    return left;
}

}  // namespace simhost::contract
