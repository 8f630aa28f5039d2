// A library that accepts the plug-in's version and lacks one entry: what that does to each message of a day.
#include <map>

#include "dialogs/SuppressionHook.h"
#include "support/plugincore/EntryNames.h"
#include "unit/frame/WorkingDayFixture.h"

namespace {

// What a missing entry does beyond not being called.
struct Consequence {
    std::map<std::string, Names> calls = {};           // of the messages that call something else
    std::map<std::string, std::int32_t> results = {};  // that are not 0
    bool registersNothing = false;                     // no menus, notifiers, format, timer
    bool suppressionIsArmed = true;                    // after "open"
};

const Names kNone = {};

std::map<std::string, Consequence> MakeConsequences() {
    std::map<std::string, Consequence> all;
    for (const std::string& name : kEntryNames) {
        all[name] = {};
    }
    // The library is refused, and shown to the user.
    Consequence& version = all["GetAPIVersion"];
    for (const std::string& message : kMessages) {
        version.calls[message] = kNone;
    }
    version.registersNothing = true;
    version.suppressionIsArmed = false;
    // No menus: the host is then not asked for notifications either.
    Consequence& menus = all["CreateMenusFromJSONBuffer"];
    for (const char* message : {"new", "open restricted", "open", "changed", "save", "about to close", "close"}) {
        menus.calls[message] = kNone;
    }
    menus.suppressionIsArmed = false;
    // Nobody says that the font manager is enabled.
    Consequence& enabled = all["PluginIsEnabled"];
    for (const char* message : {"new", "open restricted", "open", "changed", "save", "about to close", "close"}) {
        enabled.calls[message] = kNone;
    }
    enabled.suppressionIsArmed = false;
    // Nobody has activated anything.
    Consequence& open = all["HandleOpenExistingDocument"];
    open.calls["open restricted"] = {"PluginIsEnabled"};
    open.calls["open"] = {"PluginIsEnabled"};
    open.suppressionIsArmed = false;
    // As if the user had declined.
    Consequence& resolve = all["InvokeResolveDialog"];
    resolve.results["open"] = kLookupNotFound;
    resolve.suppressionIsArmed = false;
    return all;
}

std::string sMissing;
FARPROC(WINAPI* sRealGetProcAddress)(HMODULE, LPCSTR) = nullptr;

FARPROC WINAPI FindAllButOne(HMODULE module, LPCSTR name) {
    return sMissing == name ? nullptr : sRealGetProcAddress(module, name);
}

class MissingEntryTest : public WorkingDayTest, public testing::WithParamInterface<std::string> {
  protected:
    MissingEntryTest() {
        sMissing = GetParam();
        const ImportPatch find("GetProcAddress", AsReplacement(FindAllButOne));
        sRealGetProcAddress = find.Original<decltype(sRealGetProcAddress)>();
        LoadFakePluginCore();
        ThePluginCore().script["HandleOpenExistingDocument"].text = "fonts";
    }

    Names ExpectedCalls(const Consequence& consequence, const std::string& message) {
        const auto other = consequence.calls.find(message);
        Names names = other != consequence.calls.end() ? other->second : kCallsOfADay.at(message);
        std::erase(names, GetParam());
        return names;
    }
};

TEST_P(MissingEntryTest, CostsNoMoreThanWhatItWouldHaveDone) {
    const Consequence consequence = MakeConsequences().at(GetParam());
    for (const std::string& message : kMessages) {
        SCOPED_TRACE(message);
        ThePluginCore().calls.Clear();
        const auto result = consequence.results.find(message);
        EXPECT_EQ(Perform(message), result == consequence.results.end() ? 0 : result->second);
        EXPECT_EQ(NamesOf(PluginCoreCalls()), ExpectedCalls(consequence, message));
        if (message == "start-up") {
            EXPECT_EQ(host.globals == nullptr, consequence.registersNothing);
            EXPECT_EQ(host.calls.Count("AddTimer"), consequence.registersNothing ? 0 : 1);
            const bool hooked = !consequence.registersNothing && GetParam() != "PluginIsEnabled";
            EXPECT_EQ(sHooksInstalled, hooked ? 1 : 0);
        }
        if (message == "open") {
            EXPECT_EQ(IsSuppressionActive(), consequence.suppressionIsArmed);
        }
    }
    EXPECT_EQ(CountRecorded("Unhandled exception in Brightbox plugin."), 0);
    EXPECT_TRUE(host.HeldSuites().empty());
    EXPECT_EQ(host.LiveBlocks(), 0);
}

TEST_P(MissingEntryTest, DoesNotFillTheLogWhileTheHostIsIdle) {
    Startup();
    Send("AI Timer", "AI Go");
    ClearRecordedLog();
    for (int i = 0; i < 100; ++i) {
        Send("AI Timer", "AI Go");
    }
    EXPECT_TRUE(RecordedLog().empty());
}

INSTANTIATE_TEST_SUITE_P(Entries, MissingEntryTest, testing::ValuesIn(kEntryNames),
                         [](const auto& entry) { return entry.param; });

}  // namespace
