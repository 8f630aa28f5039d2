// A plug-in that does on request what no plug-in should, so that every rule of the simulated host can be seen to catch.
// The message's caller is "Fault", its selector names the fault. Ticks and file checks, which it never gets unless it
// registered for them, it misuses as well.
#include <cstdint>
#include <cstring>

#include "FatalFaults.h"
#include "HeldSuite.h"
#include "host/Messages.h"
#include "HostStateFaults.h"
#include "MessagingFaults.h"
#include "OddMessageFaults.h"
#include "ProcessFaults.h"
#include "RegistrationFaults.h"
#include "ResourceFaults.h"
#include "SweepFaults.h"

namespace {

void DoNothing() {}

struct FaultRow {
    const char* name;
    void (*commit)();
};

constexpr FaultRow kFaults[] = {
    {"leak a suite", &LeakSuite},
    {"release a suite that is not held", &ReleaseForeignSuite},
    {"use a suite after releasing it", &UseSuiteAfterRelease},
    {"leak a string", &LeakString},
    {"leak a path", &LeakPath},
    {"leak a block", &LeakBlock},
    {"write behind a block", &OverrunBlock},
    {"leak a handle", &LeakHandle},
    {"dispose a handle twice", &DisposeTwice},
    {"leak references", &LeakReference},
    {"use a reference after releasing it", &UseReferenceAfterRelease},
    {"use art after disposing the handle", &UseArtAfterDispose},
    {"make up a handle", &MakeUpHandle},
    {"pass null", &PassNull},
    {"call a slot that is not offered", &CallUnofferedSlot},
    {"call a slot of the basic suite that is not offered", &CallUnofferedBasicSlot},
    {"call on another thread", &CallOnOtherThread},
    {"leave a timer", &LeaveTimer},
    {"leave two timers", &LeaveTimers},
    {"register as another plug-in", &RegisterAsAnother},
    {"add a disabled menu item", &AddDisabledItem},
    {"leak the text of a menu item", &LeakItemText},
    {"add a file format", &AddFileFormat},
    {"leave a hook", &LeaveHook},
    {"show a box", &ShowBox},
    {"call the PluginCore", &CallPluginCore},
    {"call the PluginCore unseen", &CallPluginCoreUnseen},
    {"load the messaging library", &LoadMessagingLibrary},
    {"listen to the panel", &ListenToPanel},
    {"throw at the panel", &ThrowAtPanel},
    {"tell the panel", &TellPanel},
    {"tell the panel on another thread", &TellPanelOnOtherThread},
    {"dispatch an event without a type", &DispatchWithoutType},
    {"write where nothing is", &AccessViolation},
    {"pass a bad pointer", &PassBadPointer},
    {"jump nowhere", &JumpNowhere},
    {"overflow the stack", &OverflowStack},
    {"throw an exception", &ThrowException},
    {"abort", &Abort},
    {"fail fast", &FailFast},
    {"hang", &Hang},
    {"spin", &Spin},
    {"hang when unloaded", &HangWhenUnloaded},
    {"end the process", &EndProcess},
    {"exit through the C runtime", &ExitThroughRuntime},
    {"exit through Windows", &ExitThroughWindows},
    {"end the main thread", &EndMainThread},
    {"let another process end it", &LetAnotherEndProcess},
    {"ask a question", &AskQuestion},
    {"show a dialog of its own", &ShowOwnDialog},
    {"leave a process", &LeaveProcess},
    {"leave a thread", &LeaveThread},
    {"bear failures", &BearFailures},
    {"leak when a call fails", &LeakWhenACallFails},
    {"keep a handle when a call fails", &KeepAHandleWhenACallFails},
    {"keep a suite when a call fails", &KeepASuiteWhenACallFails},
    {"crash when a call fails", &CrashWhenACallFails},
    {"hang when a call fails", &HangWhenACallFails},
    {"throw when a call fails", &ThrowWhenACallFails},
    {"stay busy when a call fails", &StayBusyWhenACallFails},
    {"leave the error mode when a call fails", &LeaveTheErrorModeWhenACallFails},
    {"spoil the next run when a call fails", &SpoilTheNextRunWhenACallFails},
    {"use what a failed call gave", &UseWhatAFailedCallGave},
    {"leave a process when a call fails", &LeaveAProcessWhenACallFails},
    {"stop calling when a call has failed", &StopCallingWhenACallHasFailed},
    {"crash when a call has failed", &CrashWhenACallHasFailed},
    {"misuse the host afterwards", &MisuseTheHostAfterwards},
    {"bear odd messages", &BearOddMessages},
    {"crash at a message of nobody", &CrashAtAMessageOfNobody},
    {"throw at a null message", &ThrowAtANullMessage},
    {"stay busy after an unknown caller", &StayBusyAfterAnUnknownCaller},
    {"handle messages within messages", &HandleMessagesWithinMessages},
    {"leave another folder", &LeaveFolder},
    {"leave another folder for libraries", &LeaveLibraryFolder},
    {"leave another locale", &LeaveLocale},
    {"leave another locale of the thread", &LeaveThreadLocale},
    {"leave another rounding", &LeaveRounding},
    {"leave another precision", &LeaveX87Precision},
    {"leave another error mode", &LeaveErrorMode},
    {"leave another error mode of the thread", &LeaveThreadErrorMode},
    {"leave another exception filter", &LeaveExceptionFilter},
    {"leave another environment", &LeaveEnvironment},
    {"leave what Windows begins with", &LeaveWhatWindowsBeginsWith},
    {"put everything back", &PutEverythingBack},
    {"leave another error mode in a hook", &LeaveErrorModeInHook},
    {"leave another error mode when unloaded", &LeaveErrorModeWhenUnloaded},
    {"nothing", &DoNothing},
};

constexpr std::int32_t kNoSuchFault = 99;
constexpr std::int32_t kSpoilt = 98;
constexpr std::int32_t kBusy = 1;

}  // namespace

// Answers 0, so it can be unloaded, and 99 for a fault that it does not know; 1 and 98 after some of the faults.
extern "C" __declspec(dllexport) std::int32_t PluginMain(const char* caller, const char* selector, void* message) {
    sMessage = static_cast<const SPMessageData*>(message);
    if (IsBusyForEver() || IsSpoilt()) {
        return IsSpoilt() ? kSpoilt : kBusy;
    }
    if (const auto answer = AnswerOddly(caller, sMessage)) {
        return *answer;
    }
    if (std::strcmp(caller, kCallerAITimer) == 0) {
        AskWhetherEnabled();
    } else if (std::strcmp(caller, kCallerAIFileFormat) == 0) {
        TakeMessagePath();
    }
    if (std::strcmp(caller, "Fault") != 0) {
        ActAfterwards(selector);
        return 0;
    }
    for (const FaultRow& fault : kFaults) {
        if (std::strcmp(fault.name, selector) == 0) {
            fault.commit();
            return 0;
        }
    }
    return kNoSuchFault;
}
