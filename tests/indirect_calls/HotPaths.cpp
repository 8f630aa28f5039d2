// The paths that the host takes all the time make few calls: the tick of the idle timer, and the hook that sees every
// message to a window of the host's.
//
//   indirect_calls.exe PLUGIN
//
// Lies beside the libraries that the plug-in loads, as the test of growth does.
#include <cstdio>
#include <cstring>
#include <exception>
#include <string>

#include "doubles/common/ImportPatch.h"
#include "doubles/host/Host.h"
#include "indirect_calls/IndirectCalls.h"
#include "simhost/plugin/MessageDriver.h"
#include "simhost/plugin/PluginModule.h"

namespace {

bool sIsRight = true;

void Expect(const char* what, int count, int least, int most) {
    const bool isRight = count >= least && count <= most;
    std::printf("%s: %d, from %d to %d is right%s\n", what, count, least, most, isRight ? "" : ": WRONG");
    sIsRight = sIsRight && isRight;
}

int sComparisons = 0;

SPBoolean CountComparison(const char* token1, const char* token2) {
    ++sComparisons;
    return std::strcmp(token1, token2) == 0 ? 1 : 0;
}

HOOKPROC sHook = nullptr;

// The plug-in's hook is not put in: it is called from here.
HHOOK WINAPI NoteHook(int, HOOKPROC hook, HINSTANCE, DWORD) {
    sHook = hook;
    return reinterpret_cast<HHOOK>(&sHook);
}

BOOL WINAPI ForgetHook(HHOOK) { return TRUE; }

LRESULT WINAPI CallNoNextHook(HHOOK, int, WPARAM, LPARAM) { return 0; }

// With the plug-in, from its start to its end.
class HotPaths {
  public:
    explicit HotPaths(const char* file) : mModule(file), mDriver(mModule) {
        ReplaceImport(mModule.Module(), "SetWindowsHookExW", AsReplacement(NoteHook));
        ReplaceImport(mModule.Module(), "UnhookWindowsHookEx", AsReplacement(ForgetHook));
        ReplaceImport(mModule.Module(), "CallNextHookEx", AsReplacement(CallNoNextHook));
        mDriver.SendInterface("Startup");
        for (void* const timer : mHost.model.ActiveTimers()) {
            mTimer = timer;
            mDriver.SendTick(timer);
        }
    }

    void CountTick() {
        const SPBasicSuite basic{nullptr, nullptr, CountComparison, {}};
        AITimerMessage message{mDriver.CommonPart(), static_cast<AITimerHandle>(mTimer)};
        message.d.basic = &basic;
        const void* const main =
            reinterpret_cast<void*>(GetProcAddress(mModule.Module(), mModule.EntryPoint().c_str()));
        sComparisons = 0;
        const int calls = IndirectCallsOf(mModule.Module(), main, [&] { mModule.Call("AI Timer", "AI Go", &message); });
        // Each of the two entries of the PluginCore lies within a guard. Fewer than these and the time cannot be true.
        Expect("tick: indirect calls", calls, 6, 15);
        Expect("tick: comparisons of names", sComparisons, 3, 3);
    }

    // A message that is of no interest.
    void CountHook(const char* what) {
        CWPSTRUCT message{};
        const int calls = IndirectCallsOf(mModule.Module(), reinterpret_cast<const void*>(sHook),
                                          [&] { sHook(HC_ACTION, 0, reinterpret_cast<LPARAM>(&message)); });
        Expect(what, calls, 1, 2);
    }

    // The PluginCore's first answer leaves nothing to be done: dialogs are suppressed from then on.
    void OpenDocument() {
        const auto notifiers = mHost.model.notifiers.Objects();
        for (const auto& [handle, notifier] : notifiers) {
            if (notifier.type == "AI Document Opened Notifier") {
                mDriver.SendNotification(reinterpret_cast<void*>(handle), notifier.type, nullptr);
            }
        }
    }

    void End() {
        mDriver.SendInterface("Shutdown");
        mDriver.SendAccess("Unload");
        mModule.Unload();
    }

  private:
    simhost::SimulatedHost mHost;
    simhost::PluginModule mModule;
    simhost::MessageDriver mDriver;
    void* mTimer = nullptr;
};

void ExpectFewCalls(const char* file) {
    HotPaths paths(file);
    paths.CountTick();
    paths.CountHook("hook while no dialog is suppressed: indirect calls");
    paths.OpenDocument();
    paths.CountHook("hook while dialogs are suppressed: indirect calls");
    paths.End();
}

}  // namespace

// An exception ends the program, and with it the test. NOLINTNEXTLINE(bugprone-exception-escape)
int main(int argc, char** argv) {
    try {
        if (argc == 2) {
            ExpectFewCalls(argv[1]);
            std::puts(sIsRight ? "Passed: few calls." : "FAILED: too many calls, or too few to be true.");
            return sIsRight ? 0 : 1;
        }
        std::puts("FAILED: usage: indirect_calls.exe PLUGIN");
    } catch (const std::exception& error) {
        std::printf("FAILED: %s\n", error.what());
    }
    return 1;
}
