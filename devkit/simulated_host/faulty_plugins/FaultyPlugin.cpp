// A plug-in that does on request what no plug-in should, so that every rule of the simulated host can be seen to catch.
// The message's caller is "Fault", its selector names the fault. Ticks and file checks, which it never gets unless it
// registered for them, it misuses as well.
#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <thread>

#include "host/ArtSuites.h"
#include "host/DocumentSuite.h"
#include "host/FileFormatSuite.h"
#include "host/MatchingArtSuite.h"
#include "host/MdMemorySuite.h"
#include "host/MenuSuite.h"
#include "host/Messages.h"
#include "host/NotifierSuite.h"
#include "host/SPSuites.h"
#include "host/StringSuites.h"
#include "host/TextEngineSuites.h"
#include "host/TimerSuite.h"
#include "MessagingFaults.h"

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

void LeaveTimers() {
    LeaveTimer();
    LeaveTimer();
}

void RegisterAsAnother() {
    const auto another = reinterpret_cast<SPPluginRef>(std::uintptr_t{0x1234});
    const Held<AITimerSuite> timers("AI Timer Suite", 5);
    AITimerHandle timer = nullptr;
    timers->AddTimer(another, "not mine", 1, &timer);
    const Held<AIMenuSuite> menus("AI Menu Suite", 11);
    AIPlatformAddMenuItemDataUS data{"Type Plugins1", {nullptr}};
    menus->AddMenuItem(another, nullptr, &data, 0, nullptr);
}

AIMenuItemHandle AddItem(const Held<AIMenuSuite>& menus, std::int32_t options) {
    const Strings strings("AI Unicode String Suite", 8);
    AIPlatformAddMenuItemDataUS data{"Type Plugins1", {nullptr}};
    strings->Initialize(data.itemText, "Item", 4, kAIUTF8CharacterEncoding);
    AIMenuItemHandle item = nullptr;
    menus->AddMenuItem(sMessage->self, nullptr, &data, options, &item);
    strings->Destroy(data.itemText);
    return item;
}

void AddDisabledItem() {
    const Held<AIMenuSuite> menus("AI Menu Suite", 11);
    menus->DisableItem(AddItem(menus, 0));
}

void LeakItemText() {
    const Held<AIMenuSuite> menus("AI Menu Suite", 11);
    ai::UnicodeStringData text{nullptr};
    menus->GetItemText(AddItem(menus, 0), text);
}

void AddFileFormat() {
    const Held<AIFileFormatSuite> formats("AI File Format Suite", 14);
    constexpr std::int32_t kType = static_cast<std::int32_t>(FourCharCode("TEXT"));
    constexpr unsigned char kTitle[] = {1, 'T'};
    PlatformAddFileFormatExData data{1, &kType, kTitle, 0, "txt"};
    AIFileFormatHandle format = nullptr;
    formats->AddFileFormatEx(sMessage->self, "T", &data, kFileFormatRead, &format, 0);
}

// Gives back the path that the host has in its message.
void TakeMessagePath() {
    const Held<AIFilePathSuite> paths("AI File Path Suite", 5);
    const auto* const message = reinterpret_cast<const AIFileFormatMessage*>(sMessage);
    ai::FilePathData path = message->file;
    paths->DeleteFilePath(path);
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

void* PluginCoreEntry(const char* name) {
    return reinterpret_cast<void*>(GetProcAddress(LoadLibraryW(L"PluginCoreX64.dll"), name));
}

void CallPluginCore() { reinterpret_cast<std::int32_t (*)()>(PluginCoreEntry("IdleEvent"))(); }

// With every tick, which is too often.
void AskWhetherEnabled() {
    std::uint8_t enabled = 0;
    const auto entry =
        reinterpret_cast<std::int32_t (*)(std::uint8_t, std::uint8_t*)>(PluginCoreEntry("PluginIsEnabled"));
    entry(1, &enabled);
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
    {"leave two timers", &LeaveTimers},
    {"register as another plug-in", &RegisterAsAnother},
    {"add a disabled menu item", &AddDisabledItem},
    {"leak the text of a menu item", &LeakItemText},
    {"add a file format", &AddFileFormat},
    {"leave a hook", &LeaveHook},
    {"show a box", &ShowBox},
    {"call the PluginCore", &CallPluginCore},
    {"load the messaging library", &LoadMessagingLibrary},
    {"listen to the panel", &ListenToPanel},
    {"throw at the panel", &ThrowAtPanel},
    {"tell the panel", &TellPanel},
    {"tell the panel on another thread", &TellPanelOnOtherThread},
    {"dispatch an event without a type", &DispatchWithoutType},
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
    if (std::strcmp(caller, kCallerAITimer) == 0) {
        AskWhetherEnabled();
    } else if (std::strcmp(caller, kCallerAIFileFormat) == 0) {
        TakeMessagePath();
    }
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
