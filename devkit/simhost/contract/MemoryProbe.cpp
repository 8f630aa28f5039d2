#include "simhost/contract/MemoryProbe.h"

#include <windows.h>

#include <array>
#include <chrono>
#include <string>

#include "simhost/contract/ContractBook.h"
#include "simhost/contract/ProbedLibrary.h"
#include "support/ForeignExceptionGuard.h"

namespace simhost::contract {

namespace {

constexpr const char* kPath = "C:\\Job\\Brochure.ai";
constexpr const char* kReport = R"({"DocumentFonts":[{"PostScriptName":"Garamond-Bold"}],"LinkedDocuments":[]})";

constexpr int kWarmUp = 60;
constexpr int kRounds = 100;
constexpr int kIntervals = 3;
// An entry that is slower is not called hundreds of times.
constexpr double kPatienceMilliseconds = 5;

// In all heaps of the process.
long BlocksInUse() {
    std::array<HANDLE, 64> heaps{};
    const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
    long blocks = 0;
    for (DWORD i = 0; i < count && i < heaps.size(); ++i) {
        PROCESS_HEAP_ENTRY entry{};
        HeapLock(heaps[i]);
        while (HeapWalk(heaps[i], &entry) != 0) {
            blocks += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? 1 : 0;
        }
        HeapUnlock(heaps[i]);
    }
    return blocks;
}

template <class Call>
bool IsQuick(const Call& call) {
    const auto begin = std::chrono::steady_clock::now();
    call();
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - begin;
    return took.count() <= kPatienceMilliseconds;
}

template <class Call>
void Repeat(int times, const Call& call) {
    for (int i = 0; i < times; ++i) {
        call();
    }
}

// A cache grows at first, or now and then; what is lost at each call grows in every interval.
template <class Call>
void Watch(const char* entry, const Call& call) {
    if (!IsQuick(call) && !IsQuick(call)) {
        return;
    }
    Book().Tried(ClauseId::kMemoryGrows);
    Repeat(kWarmUp, call);
    long least = kRounds * 1000L;
    for (int interval = 0; interval < kIntervals; ++interval) {
        const long before = BlocksInUse();
        Repeat(kRounds, call);
        least = std::min(least, BlocksInUse() - before);
    }
    if (least >= kRounds / 2) {
        Book().Broken(
            {ClauseId::kMemoryGrows, entry, 0,
             "at least " + std::to_string(least) + " blocks more after each " + std::to_string(kRounds) + " calls"});
    }
}

}  // namespace

void ProbeMemory(ProbedLibrary& library) {
    library.Start();
    static std::array<char, kPluginCoreOpenReplySize + 1> sBuffer;
    std::uint64_t size = 0;
    const auto reply = [&](std::uint64_t capacity) {
        size = capacity;
        sBuffer[0] = 0;
        return sBuffer.data();
    };
    const auto watch = [](const char* name, auto* entry, const auto& call) {
        if (entry != nullptr) {
            CallForeignCode([&] {
                Watch(name, call);
                return 0;
            });
        }
    };
#define WATCH(name, ...)                                           \
    {                                                              \
        auto* const entry = library.Real<decltype(::name)>(#name); \
        watch(#name, entry, [&] { entry(__VA_ARGS__); });          \
    }
    std::uint8_t enabled = 0;
    std::uint32_t number = 0;
    WATCH(IdleEvent)
    WATCH(ProcessPanelMessages, 1)
    WATCH(PluginIsEnabled, 1, &enabled)
    WATCH(GetSocketPort, &number)
    WATCH(GetAPIVersion, &number, kPluginCoreVersion)
    WATCH(GetSettings, reply(kPluginCoreSettingsSize), &size)
    WATCH(GetMenus, kPath, reply(kPluginCoreMenusSize), &size)
    WATCH(GetIDForDocument, kPath, reply(kPluginCoreDocumentIDSize), &size)
    WATCH(HandleOpenExistingDocument, kPath, reply(kPluginCoreOpenReplySize), &size)
    WATCH(UpdateDocumentFontUsage, "document", kReport)
    WATCH(HandleSaveDocument, kPath, kReport)
    WATCH(HandleCloseDocument, kPath, kReport)
#undef WATCH
    library.End();
}

}  // namespace simhost::contract
