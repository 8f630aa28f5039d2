#include "simhost/sweep/LastingEffects.h"

#include "simhost/launch/Patterns.h"
#include "simhost/sweep/Explanations.h"

namespace simhost::sweep {

namespace {

constexpr const char* kMenuItems =
    "the items that a run adds stay in the registry for good, as they stay in the host's menus, and the next run "
    "updates them too: as many as the faulty run came to add";
constexpr const char* kTableNotGivenBack =
    "a table of suites that cannot be given back counts as held from there on: what was given back before the refusal "
    "is not acquired again, and what needs it fails or cannot be released";
constexpr const char* kTableInPart =
    "a table that is refused in part stays held as far as it was acquired, and the next run acquires it from its "
    "beginning";
constexpr const char* kBoundOnce =
    "entries of the PluginCore are looked for once: one that is not found then is missing for good";
constexpr const char* kFoundElsewhere =
    "the library that is found first is kept: with a place that cannot be read, it is that of the next place";
constexpr const char* kHookStays = "a hook that Windows does not remove goes on, as nobody has its handle any more";
constexpr const char* kPanelLater =
    "the panel is reached by the first tick of the second run, in which no time has passed for another question to the "
    "PluginCore";

constexpr const char* kWordsStay =
    "a word file that is not found makes the built-in words take its place, also at shut-down, and no word ever leaves "
    "the list";

constexpr const char* kReleaseHeld = "SP Basic Suite/ReleaseSuite/<held suite>";

constexpr LastingEffect kEffects[] = {
    {"*", "calls of AI Menu Suite/CheckItem", kMenuItems},
    {"*", "calls of AI Menu Suite/*ableItem", kMenuItems},
    {"*", "rule stale-reference: AI Menu Suite/CheckItem: never given out*", kMenuItems},
    {"*", "rule stale-reference: AI Menu Suite/*ableItem: never given out*", kMenuItems},
    {"*", "expectation host-calls: * AI Menu Suite/CheckItem was called *", kMenuItems},
    {"*", "expectation host-calls: * AI Menu Suite/*ableItem was called *", kMenuItems},
    {kReleaseHeld, "answers", kTableNotGivenBack},
    {kReleaseHeld, "stopped exceptions", kTableNotGivenBack},
    {kReleaseHeld, "calls of *", kTableNotGivenBack},
    {kReleaseHeld, "expectation *", kTableNotGivenBack},
    {kReleaseHeld, "rule reference-leak:*", kTableNotGivenBack},
    {kReleaseHeld, "rule path-leak:*", kTableNotGivenBack},
    {kReleaseHeld, "rule string-leak:*", kTableNotGivenBack},
    {kReleaseHeld, "rule contract: exception: *", kTableNotGivenBack},
    {"SP Basic Suite/AcquireSuite/<held suite>", "rule suite-leak: * is still held 2 times*", kTableInPart},
    {"GetProcAddress", "answers", kBoundOnce},
    {"GetProcAddress", "calls of *", kBoundOnce},
    {"GetProcAddress", "expectation *", kBoundOnce},
    {"GetProcAddress", "rule unrecorded: a PluginCore is loaded, and no call of it was recorded*", kBoundOnce},
    {"GetProcAddress", "rule contract: *", kBoundOnce},
    {"GetProcAddress", "stopped exceptions", kBoundOnce},
    {"*", "expectation library: the PluginCore is *", kFoundElsewhere},
    {"UnhookWindowsHookEx", "rule hook-left: a dialog after the end was *", kHookStays},
    {"UnhookWindowsHookEx", "expectation dialog: *", kHookStays},
    {"_stat64", "expectation dialog: * was clicked OK, expected untouched *", kWordsStay},
    {"*", "expectation calls: * but came RegisterPlugPlug *", kPanelLater},
};

}  // namespace

bool LastingEffect::Explains(std::string_view operation, std::string_view difference) const {
    return Matches(operation, failed) && MatchesPattern(difference, changes);
}

std::span<const LastingEffect> LastingEffects() { return kEffects; }

}  // namespace simhost::sweep
