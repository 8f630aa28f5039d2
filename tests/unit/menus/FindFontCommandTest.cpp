#include "menus/FindFontCommand.h"

#include <windows.h>

#include <stdexcept>

#include "doubles/common/ForeignException.h"
#include "frame/base/SuiteOperations.h"
#include "support/Errors.h"
#include "unit/menus/MenuFixture.h"

namespace {

using Calls = std::vector<std::string>;
using Log = std::vector<RecordedLine>;

const std::string kKey = "Adobe Illustrator Find Font Menu Item";

class FindFontCommandTest : public MenuTest {
  protected:
    void ExpectKnown(SPPluginRef knownOwner, AIMenuItemHandle knownItem) {
        EXPECT_EQ(globals.findFontOwner, knownOwner);
        EXPECT_EQ(globals.findFontItem, knownItem);
    }

    Log CacheLog(const Calls& inner) const {
        Log lines = {{1, "Entering CacheFindFontMenuItem()"}};
        for (const std::string& line : inner) {
            lines.push_back({0, line});
        }
        return lines;
    }
    std::string Examining(int count) const {
        return "Examining " + std::to_string(count) + " menu items in search of '" + kKey + "' (menuPluginRef " +
               Shown(owner) + ")";
    }
    std::string NeverFound() const { return "WARNING:  never found menuPluginRef " + Shown(owner); }
    static std::string FoundByKey(int index, AIMenuItemHandle item, SPPluginRef itemOwner, const std::string& text) {
        return "GetItemText for item " + std::to_string(index) + " (menuHandle " + Shown(item) + "; menuPluginRef " +
               Shown(itemOwner) + ") is '" + text + "'; GetMenuItemKeyboardShortcutDictionaryKey() is '" + kKey + "'";
    }
    Calls CallsFrom(std::ptrdiff_t first) const {
        return {host.calls.Calls().begin() + first, host.calls.Calls().end()};
    }

    // A host with the command where it belongs.
    AIMenuItemHandle AddCommand() { return host.AddItem("Find Font...", kKey, owner); }

    const SPPluginRef owner = host.AddPlugin("TextFindFont");
    const SPPluginRef stranger = host.AddPlugin("Stranger");
};

const Calls kReleases = {"ReleaseSuite('AI Menu Suite', 11)", "ReleaseSuite('SP Plug-ins Suite', 6)"};

// --- CacheFindFontMenuItem ------------------------------------------------------------------------------------------

TEST_F(FindFontCommandTest, CommandOfItsOwnerIsRemembered) {
    const AIMenuItemHandle item = AddCommand();
    CacheFindFontMenuItem();
    ExpectKnown(owner, item);
    EXPECT_EQ(RecordedLog(), CacheLog({Examining(1), FoundByKey(0, item, owner, "Find Font...")}));
    ASSERT_EQ(host.calls.Calls().size(), 11u);
    EXPECT_EQ(Calls(host.calls.Calls().begin(), host.calls.Calls().begin() + 8),
              (Calls{"AcquireSuite('SP Plug-ins Suite', 6)", "AcquireSuite('AI Menu Suite', 11)",
                     "GetNamedPlugin('TextFindFont')", "CountMenuItems()", "GetNthMenuItem(0)",
                     "GetMenuItemPlugin(" + HandleText(item) + ")", "GetItemText(" + HandleText(item) + ")",
                     "GetMenuItemKeyboardShortcutDictionaryKey(" + HandleText(item) + ")"}));
    EXPECT_THAT(CallsFrom(9), testing::UnorderedElementsAreArray(kReleases));
}

TEST_F(FindFontCommandTest, OwnerDecidesAndNotTheKeyAndItsFirstItemEndsTheSearch) {
    const AIMenuItemHandle keyed = host.AddItem("Keyed by another", kKey, stranger);
    host.AddItem("Of nobody", "x", stranger);
    const AIMenuItemHandle first = host.AddItem("Any of the owner's", "some other key", owner);
    AddCommand();
    CacheFindFontMenuItem();
    ExpectKnown(owner, first);
    EXPECT_EQ(host.calls.Count("GetNthMenuItem"), 3);
    EXPECT_EQ(RecordedLog(), CacheLog({Examining(4), FoundByKey(0, keyed, stranger, "Keyed by another")}));
}

TEST_F(FindFontCommandTest, ItemWithoutAKeyCountsWhenItsOwnerIsTheRightOne) {
    const AIMenuItemHandle item = host.AddItem("No key", {}, owner);
    CacheFindFontMenuItem();
    ExpectKnown(owner, item);
    EXPECT_EQ(RecordedLog(), CacheLog({Examining(1)}));
}

TEST_F(FindFontCommandTest, WithoutAnItemOfTheOwnersTheLastItemWithTheKeyAndItsOwnOwnerAreUsedAfterAWarning) {
    const SPPluginRef lastOwner = host.AddPlugin("Last owner");
    const AIMenuItemHandle first = host.AddItem("First", kKey, stranger);
    host.AddItem("Between", "another key", stranger);
    const AIMenuItemHandle last = host.AddItem("Last \xE6\x96\x87", kKey, lastOwner);
    host.AddItem("Behind", "another key", stranger);
    CacheFindFontMenuItem();
    ExpectKnown(lastOwner, last);
    EXPECT_EQ(RecordedLog(), CacheLog({Examining(4), FoundByKey(0, first, stranger, "First"),
                                       FoundByKey(2, last, lastOwner, "Last \xE6\x96\x87"), NeverFound()}));
}

TEST_F(FindFontCommandTest, WithoutOwnerAndKeyNothingIsRemembered) {
    host.AddItem("Any", "another key", stranger);
    CacheFindFontMenuItem();
    ExpectKnown(nullptr, nullptr);
    EXPECT_EQ(RecordedLog(), CacheLog({Examining(1), NeverFound()}));
}

TEST_F(FindFontCommandTest, KeyIsComparedExactly) {
    for (const std::string& key : {kKey + " ", kKey.substr(1), std::string("adobe illustrator find font menu item")}) {
        host.AddItem("Almost", key, stranger);
    }
    CacheFindFontMenuItem();
    ExpectKnown(nullptr, nullptr);
    EXPECT_EQ(RecordedLog().size(), 3u);
}

TEST_F(FindFontCommandTest, HostWithoutItemsIsExaminedAndWarnedOf) {
    CacheFindFontMenuItem();
    ExpectKnown(nullptr, nullptr);
    EXPECT_EQ(RecordedLog(), CacheLog({Examining(0), NeverFound()}));
}

TEST_F(FindFontCommandTest, CountThatFailsIs0WhateverItSays) {
    AddCommand();
    host.calls.FailAfterWork("CountMenuItems", 1);
    CacheFindFontMenuItem();
    ExpectKnown(nullptr, nullptr);
    EXPECT_EQ(host.calls.Count("GetNthMenuItem"), 0);
    EXPECT_EQ(RecordedLog(), CacheLog({Examining(0), NeverFound()}));
}

TEST_F(FindFontCommandTest, ItemsWithoutAHandleArePassedOver) {
    host.AddItem("Nothing", kKey, owner);
    host.calls.SkipWork("GetNthMenuItem");
    const AIMenuItemHandle item = AddCommand();
    CacheFindFontMenuItem();
    ExpectKnown(owner, item);
    EXPECT_EQ(host.calls.Count("GetMenuItemPlugin"), 1);
    EXPECT_EQ(host.calls.Count("GetItemText"), 1);
}

TEST_F(FindFontCommandTest, ItemWhoseOwnerTheHostDoesNotTellIsNotTheOwners) {
    AddCommand();
    const AIMenuItemHandle second = host.AddItem("Second", "another key", owner);
    host.calls.FailAfterWork("GetMenuItemPlugin", 1);
    CacheFindFontMenuItem();
    ExpectKnown(owner, second);
}

TEST_F(FindFontCommandTest, ItemWhoseTextTheHostDoesNotTellIsNoFallbackButMayBeTheOwners) {
    const AIMenuItemHandle keyed = host.AddItem("Keyed", kKey, stranger);
    const AIMenuItemHandle unread = host.AddItem("Unread", kKey, stranger);
    host.calls.FailAfterWork("GetItemText", 1, 2);
    CacheFindFontMenuItem();
    ExpectKnown(stranger, keyed);
    EXPECT_NE(keyed, unread);

    const AIMenuItemHandle owned = AddCommand();
    host.calls.FailAlwaysAfterWork("GetItemText", 1);
    ClearRecordedLog();
    CacheFindFontMenuItem();
    ExpectKnown(owner, owned);
    EXPECT_EQ(RecordedLog(), CacheLog({Examining(3)}));
}

class MissingOwnerTest : public FindFontCommandTest, public testing::WithParamInterface<bool> {};

TEST_P(MissingOwnerTest, LeavesBothUnknownAndTheItemsUnexamined) {
    AddCommand();
    globals.findFontOwner = stranger;
    globals.findFontItem = reinterpret_cast<AIMenuItemHandle>(0x99);
    if (GetParam()) {
        host.calls.FailAfterWork("GetNamedPlugin", 1);
    } else {
        host.calls.SkipWork("GetNamedPlugin");
    }
    CacheFindFontMenuItem();
    ExpectKnown(nullptr, nullptr);
    EXPECT_EQ(RecordedLog(), CacheLog({}));
    EXPECT_EQ(host.calls.Count("CountMenuItems"), 0);
    EXPECT_THAT(CallsFrom(3), testing::UnorderedElementsAreArray(kReleases));
}

INSTANTIATE_TEST_SUITE_P(ByAnErrorOrByNull, MissingOwnerTest, testing::Bool());

TEST_F(FindFontCommandTest, SearchBeginsByForgetting) {
    globals.findFontOwner = stranger;
    globals.findFontItem = reinterpret_cast<AIMenuItemHandle>(0x99);
    host.calls.During("GetNamedPlugin", [&] { ExpectKnown(nullptr, nullptr); });
    const AIMenuItemHandle item = AddCommand();
    CacheFindFontMenuItem();
    ExpectKnown(owner, item);
}

class RefusedSuiteTest : public FindFontCommandTest, public testing::WithParamInterface<const char*> {};

TEST_P(RefusedSuiteTest, LeavesBothUnknownAndThrowsNothing) {
    AddCommand();
    globals.findFontOwner = stranger;
    globals.findFontItem = reinterpret_cast<AIMenuItemHandle>(0x99);
    host.RefuseSuite(GetParam(), 42);
    EXPECT_NO_THROW(CacheFindFontMenuItem());
    ExpectKnown(nullptr, nullptr);
    EXPECT_EQ(RecordedLog(), CacheLog({"ERROR:  throwing 42."}));
    EXPECT_EQ(host.calls.Count("GetNamedPlugin"), 0);
}

INSTANTIATE_TEST_SUITE_P(Suites, RefusedSuiteTest, testing::Values("SP Plug-ins Suite", "AI Menu Suite"));

// Every host call of the search, in turn, ends it with an exception.
class ThrowingHostTest : public FindFontCommandTest, public testing::WithParamInterface<const char*> {};

TEST_P(ThrowingHostTest, ThrowsIntoNobodyAndBothSuitesGoBack) {
    AddCommand();
    host.calls.During(GetParam(), [] { throw ai::Error(5); });
    EXPECT_NO_THROW(CacheFindFontMenuItem());
    // Stored before the items are searched.
    ExpectKnown(std::string(GetParam()) == "GetNamedPlugin" ? nullptr : owner, nullptr);
    EXPECT_EQ(host.calls.Count("ReleaseSuite"), 2);
}

INSTANTIATE_TEST_SUITE_P(Operations, ThrowingHostTest,
                         testing::Values("GetNamedPlugin", "CountMenuItems", "GetNthMenuItem", "GetMenuItemPlugin",
                                         "GetItemText", "GetMenuItemKeyboardShortcutDictionaryKey"));

// --- DisplayFindFontDialog ------------------------------------------------------------------------------------------

class DisplayFindFontTest : public FindFontCommandTest {
  protected:
    // As after a search that has found the command.
    AIMenuItemHandle Know() {
        globals.findFontItem = AddCommand();
        globals.findFontOwner = owner;
        return globals.findFontItem;
    }
    // The calls that send the message for the item.
    static Calls Sent(SPPluginRef to, AIMenuItemHandle item) {
        return {"AcquireSuite('SP Interface Suite', 2)", "SetupMessageData(" + HandleText(to) + ", zeroed)",
                "SendMessage(" + HandleText(to) + ", 'AI Menu', 'AI Go', item " + HandleText(item) + ", set up)",
                "ReleaseSuite('SP Interface Suite', 2)"};
    }
    static Log DisplayLog(const Calls& inner) {
        Log lines = {{1, "Entering DisplayFindFontDialog"}};
        for (const std::string& line : inner) {
            lines.push_back({0, line});
        }
        lines.push_back({-1, "Exiting DisplayFindFontDialog"});
        return lines;
    }
};

TEST_F(DisplayFindFontTest, KnownCommandIsSentToItsOwnerAsIfChosen) {
    const AIMenuItemHandle item = Know();
    DisplayFindFontDialog();
    EXPECT_EQ(host.calls.Calls(), Sent(owner, item));
    EXPECT_EQ(RecordedLog(), DisplayLog({}));
}

TEST_F(DisplayFindFontTest, SuiteGoesBackBeforeTheExitIsLogged) {
    Know();
    Log whenReleased;
    host.calls.During("ReleaseSuite", [&] { whenReleased = RecordedLog(); });
    DisplayFindFontDialog();
    EXPECT_EQ(whenReleased, (Log{{1, "Entering DisplayFindFontDialog"}}));
}

TEST_F(DisplayFindFontTest, UnknownCommandIsSearchedFirst) {
    const AIMenuItemHandle item = AddCommand();
    DisplayFindFontDialog();
    EXPECT_EQ(host.calls.Calls().front(), "AcquireSuite('SP Plug-ins Suite', 6)");
    EXPECT_EQ(CallsFrom(11), Sent(owner, item));
    EXPECT_EQ(RecordedLog(), (Log{{1, "Entering DisplayFindFontDialog"},
                                  {1, "Entering CacheFindFontMenuItem()"},
                                  {0, Examining(1)},
                                  {0, FoundByKey(0, item, owner, "Find Font...")},
                                  {-1, "Exiting DisplayFindFontDialog"}}));
}

TEST_F(DisplayFindFontTest, SecondRequestSearchesNothing) {
    const AIMenuItemHandle item = AddCommand();
    DisplayFindFontDialog();
    host.calls.Clear();
    DisplayFindFontDialog();
    EXPECT_EQ(host.calls.Calls(), Sent(owner, item));
    EXPECT_EQ(CountRecorded("Entering CacheFindFontMenuItem()"), 1);
}

TEST_F(DisplayFindFontTest, HalfOfThePairIsNotEnough) {
    Know();
    globals.findFontOwner = nullptr;
    DisplayFindFontDialog();
    EXPECT_EQ(CountRecorded("Entering CacheFindFontMenuItem()"), 1);
    globals.findFontItem = nullptr;
    DisplayFindFontDialog();
    EXPECT_EQ(CountRecorded("Entering CacheFindFontMenuItem()"), 2);
    EXPECT_EQ(host.calls.Count("SendMessage"), 2);
}

TEST_F(DisplayFindFontTest, FallbackIsSentToItsOwnOwner) {
    const AIMenuItemHandle item = host.AddItem("Elsewhere", kKey, stranger);
    DisplayFindFontDialog();
    EXPECT_EQ(CallsFrom(11), Sent(stranger, item));
}

TEST_F(DisplayFindFontTest, FallbackWhoseOwnerTheHostDoesNotTellIsSentToNobodyAndTheNextRequestSearchesAgain) {
    const AIMenuItemHandle item = host.AddItem("Elsewhere", kKey, stranger);
    host.calls.FailAlwaysAfterWork("GetMenuItemPlugin", 1);
    DisplayFindFontDialog();
    ExpectKnown(nullptr, item);
    EXPECT_EQ(CountRecorded(FoundByKey(0, item, nullptr, "Elsewhere")), 1);
    DisplayFindFontDialog();
    EXPECT_EQ(CountRecorded("Entering CacheFindFontMenuItem()"), 2);
    EXPECT_EQ(host.calls.Count("SetupMessageData"), 0);
    EXPECT_EQ(host.calls.Count("SendMessage"), 0);
}

TEST_F(DisplayFindFontTest, WithoutTheOwnerNothingIsSentAndTheNextRequestSearchesAgain) {
    host.model.otherPlugins.Remove(owner);
    DisplayFindFontDialog();
    EXPECT_EQ(RecordedLog(), (Log{{1, "Entering DisplayFindFontDialog"},
                                  {1, "Entering CacheFindFontMenuItem()"},
                                  {-1, "Exiting DisplayFindFontDialog"}}));
    DisplayFindFontDialog();
    EXPECT_EQ(CountRecorded("Entering CacheFindFontMenuItem()"), 2);
    EXPECT_EQ(host.calls.Count("SendMessage"), 0);
}

TEST_F(DisplayFindFontTest, RefusedInterfaceSuiteIsLogged) {
    const AIMenuItemHandle item = Know();
    host.RefuseSuite("SP Interface Suite", 42);
    DisplayFindFontDialog();
    EXPECT_EQ(host.calls.Calls(), Calls{Sent(owner, item)[0]});
    EXPECT_EQ(RecordedLog(), DisplayLog({"ERROR:  throwing 42.", "ERROR:  could not acquire 'SP Interface Suite'"}));
}

TEST_F(DisplayFindFontTest, AnswerOfTheOwnerThatIsNot0IsLoggedAndNothingElse) {
    const AIMenuItemHandle item = Know();
    host.model.otherPlugins.Find(owner)->result = -17;
    DisplayFindFontDialog();
    EXPECT_EQ(host.calls.Calls(), Sent(owner, item));
    EXPECT_EQ(RecordedLog(), DisplayLog({"Error -17 on attempt to display find-font dialog"}));
    ExpectKnown(owner, item);
}

TEST_F(DisplayFindFontTest, MessageThatTheHostDoesNotSendIsLogged) {
    const AIMenuItemHandle item = Know();
    host.calls.Fail("SendMessage", 23);
    DisplayFindFontDialog();
    EXPECT_EQ(host.calls.Calls(), Sent(owner, item));
    EXPECT_EQ(RecordedLog(), DisplayLog({"Error 23 on attempt to display find-font dialog"}));
}

TEST_F(DisplayFindFontTest, CodeOfTheHostCountsMoreThanTheAnswerOfTheOwner) {
    Know();
    host.calls.FailAfterWork("SendMessage", 23);
    host.model.otherPlugins.Find(owner)->result = -17;
    DisplayFindFontDialog();
    EXPECT_EQ(RecordedLog(), DisplayLog({"Error 23 on attempt to display find-font dialog"}));
}

TEST_F(DisplayFindFontTest, MessageThatTheHostDoesNotSetUpIsNotSentButLogged) {
    const Calls sent = Sent(owner, Know());
    host.calls.Fail("SetupMessageData", 24);
    DisplayFindFontDialog();
    EXPECT_EQ(host.calls.Calls(), (Calls{sent[0], sent[1], sent[3]}));
    EXPECT_EQ(RecordedLog(), DisplayLog({"Error 24 on attempt to display find-font dialog"}));
}

class ThrowingInterfaceTest : public DisplayFindFontTest, public testing::WithParamInterface<const char*> {};

TEST_P(ThrowingInterfaceTest, ThrowsIntoNobodyAndTheSuiteGoesBack) {
    Know();
    host.calls.During(GetParam(), [] { throw ai::Error(5); });
    EXPECT_NO_THROW(DisplayFindFontDialog());
    EXPECT_EQ(host.calls.Calls().back(), "ReleaseSuite('SP Interface Suite', 2)");
    EXPECT_EQ(RecordedLog(), DisplayLog({}));
}

INSTANTIATE_TEST_SUITE_P(Operations, ThrowingInterfaceTest, testing::Values("SetupMessageData", "SendMessage"));

TEST_F(DisplayFindFontTest, OwnerThatThrowsLikeAnotherCompilerThrowsIntoNobodyAndTheSuiteGoesBack) {
    Know();
    host.calls.During("SendMessage", ThrowLikeAnotherCompiler);
    EXPECT_NO_THROW(DisplayFindFontDialog());
    EXPECT_EQ(host.calls.Calls().back(), "ReleaseSuite('SP Interface Suite', 2)");
    EXPECT_EQ(RecordedLog(), DisplayLog({}));
}

TEST_F(DisplayFindFontTest, WithoutAGlobalsBlockNothingIsFoundAndNothingBreaks) {
    AddCommand();
    sGlobals = nullptr;
    DisplayFindFontDialog();
    EXPECT_EQ(host.calls.Count("SendMessage"), 0);
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "Exiting DisplayFindFontDialog"}));
}

}  // namespace
