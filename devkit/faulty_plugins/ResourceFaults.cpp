#include "ResourceFaults.h"

#include <cstdint>
#include <cstring>

#include "doubles/common/Thread.h"
#include "HeldSuite.h"
#include "host/ArtSuites.h"
#include "host/DocumentSuite.h"
#include "host/MatchingArtSuite.h"
#include "host/MdMemorySuite.h"
#include "host/SPSuites.h"
#include "host/StringSuites.h"
#include "host/TextEngineSuites.h"
#include "host/TimerSuite.h"

namespace {

using Blocks = Held<SPBlocksSuite>;

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

ATE::TextRangeRef FirstRange(AIArtHandle** matches) {
    const Held<AITextFrameSuite> frames("AI Text Frame Suite", 4);
    ATE::TextRangeRef range = nullptr;
    frames->GetATETextRange(**matches, &range);
    return range;
}

}  // namespace

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
    const Held<AIUnicodeStringSuite> strings("AI Unicode String Suite", 8);
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

void LeakHandle() { FindTextFrames(); }

void DisposeTwice() {
    AIArtHandle** const matches = FindTextFrames();
    Dispose(matches);
    Dispose(matches);
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
    const Thread other([] { sMessage->basic->IsEqual("a", "b"); });
}
