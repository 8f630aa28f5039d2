#include "simhost/contract/MemoryProbe.h"

#include <windows.h>

#include <array>
#include <chrono>
#include <limits>
#include <string>

#include "simhost/contract/ContractBook.h"
#include "simhost/contract/ProbedLibrary.h"
#include "simhost/contract/ResourcesInUse.h"
#include "simhost/run/FlightRecorder.h"
#include "support/ForeignExceptionGuard.h"

namespace simhost::contract {

namespace {

constexpr const char* kPath = "C:\\Job\\Brochure.ai";
constexpr const char* kReport = R"({"DocumentFonts":[{"PostScriptName":"Garamond-Bold"}],"LinkedDocuments":[]})";

constexpr int kAttempts = 5;
constexpr int kIntervals = 3;

// How often the same is done, and how long once may take: what is slower is not done hundreds of times.
struct Plan {
    int warmUp, rounds;
    double patienceMilliseconds;
};
constexpr Plan kCalls = {60, 100, 5};
constexpr Plan kStarts = {10, 20, 50};

class Watcher {
  public:
    Watcher(const Deadline& deadline, const Plan& plan) : mDeadline(deadline), mPlan(plan) {}

    // `run` makes calls without the layer; those of `entry` are blamed for what grows.
    template <class Run>
    void Watch(const char* entry, const Run& run) const {
        Book().Begin(entry, 0);
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
        constexpr long kMany = std::numeric_limits<long>::max();
        ResourcesInUse least{kMany, kMany, kMany};
        for (int interval = 0; interval < kIntervals; ++interval) {
            const ResourcesInUse before = ResourcesInUse::Now();
            Repeat(mPlan.rounds, entry, run);
            least = Least(least, ResourcesInUse::Now() - before);
        }
        Judge(ClauseId::kMemoryGrows, entry, least.blocks, "blocks of memory");
        Judge(ClauseId::kHandlesGrow, entry, least.handles, "handles");
        Judge(ClauseId::kHandlesGrow, entry, least.objects, "windows or drawing objects");
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

    void Judge(ClauseId clause, const char* entry, long grown, const char* what) const {
        Book().Tried(clause);
        if (grown >= mPlan.rounds / 2) {
            Book().Broken({clause, entry, 0,
                           "at least " + std::to_string(grown) + " " + what + " more after each " +
                               std::to_string(mPlan.rounds) + " calls"});
        }
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
    WATCH(GetIDForDocument, kPath, reply(kPluginCoreDocumentIDSize), &size)
    WATCH(HandleOpenExistingDocument, kPath, reply(kPluginCoreOpenReplySize), &size)
    WATCH(ActivateChosenFonts, kPath, reply(kPluginCoreOpenReplySize), &size)
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
