#include "growth/Measurements.h"

#include <windows.h>

#include "doubles/common/Text.h"
#include "growth/Messages.h"
#include "simhost/checks/ImportWatch.h"

namespace growth {

namespace {

// Until caches are filled and tables have their size.
constexpr int kFirstCycles = 30;
constexpr int kFirstRounds = 50;
constexpr int kCalls = 100;

template <class Run>
Counts GrowthOf(const Run& run) {
    const Counts before = Counts::Now();
    run();
    return Counts::Now() - before;
}

template <class Run>
void Repeat(int times, const Run& run) {
    for (int i = 0; i < times; ++i) {
        run();
    }
}

// All the same each time; the remainder would show that they are not.
Counts PerCall(const Counts& counts) {
    Counts each;
    for (std::size_t i = 0; i < kKinds; ++i) {
        each.of[i] = counts.of[i] / kCalls;
    }
    return each;
}

}  // namespace

Counts CostOfOpenHandles(const Libraries& libraries, unsigned long coreApplication) {
    const auto leaveOpen = [&] {
        OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, coreApplication);
        WIN32_FIND_DATAW found;
        FindFirstFileW(libraries.messaging.c_str(), &found);
    };
    leaveOpen();
    return PerCall(GrowthOf([&] { Repeat(kCalls, leaveOpen); }));
}

Measurement MeasureIdleCycles(const std::filesystem::path& idle, const Libraries& libraries, int cycles) {
    const auto live = [&] {
        LiveThrough(idle, libraries);
        LoadAndFree(libraries);
    };
    Repeat(kFirstCycles, live);
    const Counts grown = GrowthOf([&] { Repeat(cycles, live); });
    return {"cycles of a plug-in that does nothing", cycles, grown, grown, true};
}

Measurement MeasureCycles(const std::filesystem::path& plugin, const Libraries& libraries, int cycles,
                          const Counts& open, const Counts& idle) {
    const auto live = [&] { LiveThrough(plugin, libraries); };
    Repeat(kFirstCycles, live);
    return {"cycles of the plug-in", cycles, GrowthOf([&] { Repeat(cycles, live); }), open * cycles + idle};
}

Measurement MeasureMessages(const std::filesystem::path& plugin, const Libraries& libraries, int messages) {
    StartedPlugin started(plugin);
    PrepareDocument(started.host, simhost::Utf8(plugin.wstring()));
    Repeat(kFirstRounds, [&] { SendRound(started); });
    long long sent = 0;
    const Counts grown = GrowthOf([&] {
        while (sent < messages) {
            sent += SendRound(started);
        }
    });
    started.End(libraries);
    return {"messages", sent, grown, {}};
}

std::vector<Measurement> MeasureLeaks(const std::filesystem::path& idle) {
    simhost::SimulatedHost host;
    simhost::PluginModule module(idle);
    simhost::WatchImports(module.Module());
    simhost::MessageDriver driver(module);
    driver.SendPlain("Leak", "nothing", true);
    std::vector<Measurement> leaks;
    for (const Kind kind : {kHandles, kWindows, kHooks, kThreads, kBlocks, kBytes}) {
        const char* const name = kKindNames[kind];
        const auto leak = [&] { driver.SendPlain("Leak", name, true); };
        // The first one may cost more: a window brings along what all windows of the thread need.
        leak();
        const Counts grown = GrowthOf(leak);
        Counts seen;
        seen.of[kind] = grown.of[kind];
        Counts expected;
        expected.of[kind] = 1;
        leaks.push_back({std::string("one of the ") + name + " left behind", 1, seen, expected});
    }
    return leaks;
}

}  // namespace growth
