#include "simhost/contract/MemoryProbe.h"

#include <windows.h>

#include <array>
#include <chrono>
#include <cstring>
#include <limits>
#include <string>

#include "simhost/contract/CallStack.h"
#include "simhost/contract/ContractBook.h"
#include "simhost/contract/ProbedLibrary.h"
#include "simhost/contract/QuietMessaging.h"
#include "simhost/contract/ResourcesInUse.h"
#include "simhost/contract/ThreadsInUse.h"
#include "simhost/run/FlightRecorder.h"
#include "support/ForeignExceptionGuard.h"

namespace simhost::contract {

namespace {

constexpr const char* kPath = "C:\\Job\\Brochure.ai";
constexpr const char* kFonts = "Garamond-Bold";
constexpr const char* kReport = R"({"DocumentFonts":[{"PostScriptName":"Garamond-Bold"}],"LinkedDocuments":[]})";

// Less is what a length or a date costs that has grown by a digit.
constexpr int kBytesPerCall = 8;
constexpr int kAttempts = 5;
constexpr int kIntervals = 3;

// How often the same is done, and how long once may take: what is slower is not done hundreds of times.
struct Plan {
    int warmUp, rounds;
    double patienceMilliseconds;
};
constexpr Plan kCalls = {60, 100, 5};
constexpr Plan kStarts = {10, 20, 50};

std::int32_t AcceptItem(const char*, const char*, const char*, std::uint8_t, std::uint8_t, std::uint8_t, const char*,
                        void*) {
    return kPluginCoreSuccess;
}

class Watcher {
  public:
    Watcher(const Deadline& deadline, const Plan& plan) : mDeadline(deadline), mPlan(plan) {}

    // `run` makes calls without the layer; those of `entry` are blamed for what grows.
    template <class Run>
    void Watch(const char* entry, const Run& run) const {
        Book().Begin(entry, 0);
        const UnguardedCalls underWay(entry);
        try {
            CallForeignCode([&] {
                WatchRuns(entry, run);
                return 0;
            });
        } catch (const OutOfTime&) {
            Book().Note(std::string(entry) + " was not called often enough to see what grows: there was no time left");
        } catch (...) {
            // It has a clause of its own, which other probes try.
            LeftEntry();
            Book().Note(std::string(entry) + " was not called often enough to see what grows: it throws");
        }
        Book().End();
    }

  private:
    // A cache grows at first, or now and then; what is lost each time grows in every interval.
    template <class Run>
    void WatchRuns(const char* entry, const Run& run) const {
        if (!IsQuick(entry, run)) {
            Book().Note(std::string(entry) + " takes too long to be called hundreds of times to see what grows");
            return;
        }
        Repeat(mPlan.warmUp, entry, run);
        constexpr long long kMany = std::numeric_limits<long long>::max();
        ResourcesInUse least{kMany, kMany, kMany, kMany, kMany};
        for (int interval = 0; interval < kIntervals; ++interval) {
            const long long threads = ThreadsInUse();
            const ResourcesInUse before = ResourcesInUse::Now();
            Repeat(mPlan.rounds, entry, run);
            // Their stacks go with them.
            WaitForThreadsToEnd(threads);
            least = Least(least, ResourcesInUse::Now() - before);
        }
        // Once for each leak: what takes blocks takes their bytes as well, and these take pages.
        if (!Judge(ClauseId::kMemoryGrows, entry, least.blocks, 1, "blocks of memory") &&
            !Judge(ClauseId::kMemoryGrows, entry, least.bytes, kBytesPerCall, "bytes in its blocks of memory")) {
            Judge(ClauseId::kMemoryGrows, entry, least.pages, 1, "pages of memory");
        }
        Judge(ClauseId::kHandlesGrow, entry, least.handles, 1, "handles");
        Judge(ClauseId::kHandlesGrow, entry, least.objects, 1, "windows or drawing objects");
    }

    // A machine that has much to do makes some call slow, but not all.
    template <class Run>
    bool IsQuick(const char* entry, const Run& run) const {
        for (int i = 0; i < kAttempts; ++i) {
            const auto begin = std::chrono::steady_clock::now();
            Repeat(1, entry, run);
            const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - begin;
            if (took.count() <= mPlan.patienceMilliseconds) {
                return true;
            }
        }
        return false;
    }

    template <class Run>
    void Repeat(int times, const char* entry, const Run& run) const {
        for (int i = 0; i < times; ++i) {
            if (mDeadline.IsOver()) {
                throw OutOfTime();
            }
            // Each call has its own time limit.
            EnteredEntry(entry);
            run();
            LeftEntry();
        }
    }

    // Whether as much is lost in every other call.
    bool Judge(ClauseId clause, const char* entry, long long grown, int perCall, const char* what) const {
        Book().Tried(clause);
        const bool isLost = grown >= static_cast<long long>(perCall) * mPlan.rounds / 2;
        if (isLost) {
            Book().Broken({clause, entry, 0,
                           "at least " + std::to_string(grown) + " " + what + " more after each " +
                               std::to_string(mPlan.rounds) + " calls"});
        }
        return isLost;
    }

    const Deadline& mDeadline;
    Plan mPlan;
};

}  // namespace

void ProbeMemory(ProbedLibrary& library) {
    library.Start();
    const Watcher watcher(library.GetDeadline(), kCalls);
    static std::array<char, kPluginCoreOpenReplySize + 1> sBuffer;
    std::uint64_t size = 0;
    const auto reply = [&](std::uint64_t capacity) {
        size = capacity;
        sBuffer[0] = 0;
        return sBuffer.data();
    };
    const auto filled = [&](const char* text) { return std::strcpy(reply(kPluginCoreOpenReplySize), text); };
    Reply menus(kPluginCoreMenusSize);
    library.GetMenus(kPath, menus.Buffer(), &menus.size);
#define WATCH(name, ...)                                                      \
    if (auto* const entry = library.Real<decltype(::name)>(#name)) {          \
        watcher.Watch(#name, [&] { static_cast<void>(entry(__VA_ARGS__)); }); \
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
    WATCH(CreateMenusFromJSONBuffer, menus.Buffer(), &AcceptItem, &size)
    WATCH(GetIDForDocument, kPath, reply(kPluginCoreDocumentIDSize), &size)
    WATCH(HandleOpenExistingDocument, kPath, reply(kPluginCoreOpenReplySize), &size)
    WATCH(InvokeResolveDialog, filled(kFonts), &size)
    WATCH(ActivateChosenFonts, kPath, reply(kPluginCoreOpenReplySize), &size)
    WATCH(HandleCreateNewDocument, reply(kPluginCoreNewDocumentSize), &size)
    WATCH(RegisterPlugPlug, QuietMessaging())
    WATCH(UpdateDocumentFontUsage, "document", kReport)
    WATCH(HandleMenuSelection, "document", "[]", "no such item")
    WATCH(HandleSaveDocument, kPath, kReport)
    WATCH(HandleCloseDocument, kPath, kReport)
#undef WATCH
    library.End();
}

void ProbeStarts(ProbedLibrary& library) {
    auto* const start = library.Real<decltype(::InitializePluginCoreInterface)>("InitializePluginCoreInterface");
    auto* const end = library.Real<decltype(::TerminatePluginCoreInterface)>("TerminatePluginCoreInterface");
    if (start == nullptr || end == nullptr) {
        return;
    }
    Watcher(library.GetDeadline(), kStarts).Watch("InitializePluginCoreInterface", [&] {
        start("C:\\Host\\Plug-ins\\Plug-in.aip");
        end();
    });
}

}  // namespace simhost::contract
