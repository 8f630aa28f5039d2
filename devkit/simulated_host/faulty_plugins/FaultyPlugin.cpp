// A plug-in that does on request what no plug-in should, so that every rule of the simulated host can be seen to catch.
// The message's caller is "Fault", its selector names the fault.
#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <thread>

#include "host/ArtSuites.h"
#include "host/DocumentSuite.h"
#include "host/MatchingArtSuite.h"
#include "host/MdMemorySuite.h"
#include "host/Messages.h"
#include "host/NotifierSuite.h"
#include "host/SPSuites.h"
#include "host/StringSuites.h"
#include "host/TextEngineSuites.h"
#include "host/TimerSuite.h"

namespace {

const SPMessageData* sMessage = nullptr;

template <class Suite>
const Suite* Acquire(const char* name, std::int32_t version) {
    const void* suite = nullptr;
    sMessage->basic->AcquireSuite(name, version, &suite);
    return static_cast<const Suite*>(suite);
}

// Holds a suite for the time of one fault.
template <class Suite>
class Held {
  public:
    Held(const char* name, std::int32_t version)
        : mName(name), mVersion(version), mSuite(Acquire<Suite>(name, version)) {}
    ~Held() { sMessage->basic->ReleaseSuite(mName, mVersion); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    const Suite* operator->() const { return mSuite; }

  private:
    const char* mName;
    std::int32_t mVersion;
    const Suite* mSuite;
};

using Blocks = Held<SPBlocksSuite>;
using Strings = Held<AIUnicodeStringSuite>;

void LeakSuite() {
    Acquire<void>("AI User Suite", 12);
    Acquire<void>("AI User Suite", 12);
}

void ReleaseForeignSuite() { sMessage->basic->ReleaseSuite("AI User Suite", 12); }

void UseSuiteAfterRelease() {
    const auto* const blocks = Acquire<SPBlocksSuite>("SP Blocks Suite", 2);
    sMessage->basic->ReleaseSuite("SP Blocks Suite", 2);
    void* block = nullptr;
    blocks->AllocateBlock(8, "late", &block);
    blocks->FreeBlock(block);
}

void LeakString() {
    const Strings strings("AI Unicode String Suite", 8);
    ai::UnicodeStringData string{nullptr};
    strings->Initialize(string, "left behind", 11, kAIUTF8CharacterEncoding);
}

void LeakPath() {
    const Held<AIDocumentSuite> documents("AI Document Suite", 16);
    ai::FilePathData path{nullptr};
    documents->GetDocumentFileSpecification(path);
}

void LeakBlock() {
    const Blocks blocks("SP Blocks Suite", 2);
    void* block = nullptr;
    blocks->AllocateBlock(8, "left behind", &block);
}

void OverrunBlock() {
    const Blocks blocks("SP Blocks Suite", 2);
    void* block = nullptr;
    blocks->AllocateBlock(8, "too small", &block);
    std::memset(block, 0, 9);
    blocks->FreeBlock(block);
}

AIArtHandle** FindTextFrames() {
    const Held<AIMatchingArtSuite> matching("AI Matching Art Suite", 7);
    AIMatchingArtSpec textFrames{kTextFrameArt, 0, 0};
    AIArtHandle** matches = nullptr;
    std::int32_t count = 0;
    matching->GetMatchingArt(&textFrames, 1, &matches, &count);
    return matches;
}

void Dispose(AIArtHandle** matches) {
    const Held<AIMdMemorySuite> memory("AI MdMemory Suite", 3);
    memory->MdMemoryDisposeHandle(reinterpret_cast<AIMdMemoryHandle>(matches));
}

void LeakHandle() { FindTextFrames(); }

void DisposeTwice() {
    AIArtHandle** const matches = FindTextFrames();
    Dispose(matches);
    Dispose(matches);
}

ATE::TextRangeRef FirstRange(AIArtHandle** matches) {
    const Held<AITextFrameSuite> frames("AI Text Frame Suite", 4);
    ATE::TextRangeRef range = nullptr;
    frames->GetATETextRange(**matches, &range);
    return range;
}

void LeakReference() {
    AIArtHandle** const matches = FindTextFrames();
    const Held<ATE::TextRangeSuite> ranges("ATE TextRange Suite", 1);
    const ATE::TextRangeRef range = FirstRange(matches);
    ranges->AddRef(range);
    Dispose(matches);
}

void UseReferenceAfterRelease() {
    AIArtHandle** const matches = FindTextFrames();
    const Held<ATE::TextRangeSuite> ranges("ATE TextRange Suite", 1);
    const ATE::TextRangeRef range = FirstRange(matches);
    ranges->Release(range);
    ATE::TextRunsIteratorRef iterator = nullptr;
    ranges->GetTextRunsIterator(range, &iterator);
    Dispose(matches);
}

void UseArtAfterDispose() {
    AIArtHandle** const matches = FindTextFrames();
    Dispose(matches);
    FirstRange(matches);
}

void MakeUpHandle() {
    const Held<AITimerSuite> timers("AI Timer Suite", 5);
    timers->SetTimerActive(reinterpret_cast<AITimerHandle>(std::uintptr_t{0x1234}), 0);
}

void PassNull() {
    const Blocks blocks("SP Blocks Suite", 2);
    blocks->AllocateBlock(8, "nowhere", nullptr);
}

void CallUnofferedSlot() {
    struct AnySuite {
        std::int64_t (*slots[256])();
    };
    const Held<AnySuite> suite("ATE Story Suite", 1);
    suite->slots[200]();
}

void CallUnofferedBasicSlot() {
    void* const slot = sMessage->basic->unused3[1];
    reinterpret_cast<void (*)()>(slot)();
}

void CallOnOtherThread() {
    std::thread([] { sMessage->basic->IsEqual("a", "b"); }).join();
}

void LeaveTimer() {
    const Held<AITimerSuite> timers("AI Timer Suite", 5);
    AITimerHandle timer = nullptr;
    timers->AddTimer(sMessage->self, "left behind", 1, &timer);
}

// Hides every dialog that is shown.
LRESULT CALLBACK HideDialogs(int code, WPARAM wParam, LPARAM lParam) {
    const auto& message = *reinterpret_cast<const CWPSTRUCT*>(lParam);
    if (code >= 0 && message.message == WM_SHOWWINDOW && message.wParam != 0) {
        PostMessageW(message.hwnd, WM_SHOWWINDOW, 0, 0);
    }
    return CallNextHookEx(nullptr, code, wParam, lParam);
}

void LeaveHook() { SetWindowsHookExW(WH_CALLWNDPROC, &HideDialogs, nullptr, GetCurrentThreadId()); }

void ShowBox() { MessageBoxW(nullptr, L"Nobody asked for it.", L"Surprise", MB_OK); }

void CallPluginCore() {
    const HMODULE library = LoadLibraryW(L"PluginCoreX64.dll");
    const auto idle = reinterpret_cast<void*>(GetProcAddress(library, "IdleEvent"));
    reinterpret_cast<std::int32_t (*)()>(idle)();
}

void AccessViolation() {
    // Not known to the compiler, which would complain.
    static volatile std::uintptr_t sNowhere = 16;
    *reinterpret_cast<volatile int*>(sNowhere) = 1;
}

void ThrowException() { throw std::runtime_error("not for the host"); }
void Abort() { std::abort(); }
void Hang() { Sleep(INFINITE); }
void EndProcess() { TerminateProcess(GetCurrentProcess(), 0); }
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
    {"leave a hook", &LeaveHook},
    {"show a box", &ShowBox},
    {"call the PluginCore", &CallPluginCore},
    {"write where nothing is", &AccessViolation},
    {"throw an exception", &ThrowException},
    {"abort", &Abort},
    {"hang", &Hang},
    {"end the process", &EndProcess},
    {"nothing", &DoNothing},
};

constexpr std::int32_t kNoSuchFault = 99;

}  // namespace

// Answers 0, so it can be unloaded, and 99 for a fault that it does not know.
extern "C" __declspec(dllexport) std::int32_t PluginMain(const char* caller, const char* selector, void* message) {
    sMessage = static_cast<const SPMessageData*>(message);
    if (std::strcmp(caller, "Fault") != 0) {
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
