// The items that AddIllustratorMenu refuses, and those that the host refuses.
#include "doubles/common/AllocationFaults.h"
#include "doubles/common/ForeignException.h"
#include "host/MenuSuite.h"
#include "unit/menus/MenuTreeFixture.h"

namespace {

// The question for an item's shortcut key, as a recorded call.
std::string KeyAsked(AIMenuItemHandle item) {
    return "GetMenuItemKeyboardShortcutDictionaryKey(" + HandleText(item) + ")";
}

// --- duplicates -----------------------------------------------------------------------------------------------------

TEST_F(MenuTreeTest, TopLevelLabelThatIsAKeyAlreadyIsRefusedAfterOneLinePerEqualItem) {
    const AIMenuItemHandle first = host.AddItem("Fonts", "Label");
    const AIMenuItemHandle second = host.AddItem("Other", "Another");
    const AIMenuItemHandle third = host.AddItem("Fonts again", "Label");
    const Outcome outcome = Add({});
    EXPECT_EQ(outcome.result, 0x9000000);
    EXPECT_EQ(outcome.calls, (Calls{"CountMenuItems()", "GetNthMenuItem(0)", KeyAsked(first), "GetNthMenuItem(1)",
                                    KeyAsked(second), "GetNthMenuItem(2)", KeyAsked(third)}));
    const std::string line = "Error: 'Label' menu item already present.";
    EXPECT_EQ(outcome.log, Framed({line, line}));
    EXPECT_TRUE(RegisteredMenuItems().empty());
}

TEST_F(MenuTreeTest, DuplicateIsRefusedWhereverItStands) {
    host.AddItem("Other", "Another");
    host.AddItem("Fonts", "Label");
    EXPECT_EQ(Add({}).result, 0x9000000);
    EXPECT_EQ(host.calls.Count("AddMenuItem"), 0);
}

TEST_F(MenuTreeTest, KeysAreComparedByteForByte) {
    for (const char* key : {"label", "Labe", "Label ", "LABEL", ""}) {
        host.AddItem("Item", key);
    }
    EXPECT_EQ(Add({}).result, 0);
    EXPECT_EQ(host.calls.Count("AddMenuItem"), 1);
}

TEST_F(MenuTreeTest, TextOfAnItemIsNoKey) {
    host.AddItem("Label", "Another");
    EXPECT_EQ(Add({}).result, 0);
}

TEST_F(MenuTreeTest, ItemWithoutAKeyIsNoDuplicate) {
    host.AddItem("Item");
    EXPECT_EQ(Add({}).result, 0);
    EXPECT_EQ(Add({.label = ""}).result, 0);
}

TEST_F(MenuTreeTest, IndicesWhereTheHostFailsArePassedOver) {
    host.AddItem("A", "Label");
    const AIMenuItemHandle second = host.AddItem("B", "Label");
    const AIMenuItemHandle third = host.AddItem("C", "Another");
    host.calls.FailAfterWork("GetNthMenuItem", 1);
    host.calls.FailAfterWork("GetMenuItemKeyboardShortcutDictionaryKey", 1);
    const Outcome outcome = Add({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(Calls(outcome.calls.begin(), outcome.calls.begin() + 6),
              (Calls{"CountMenuItems()", "GetNthMenuItem(0)", "GetNthMenuItem(1)", KeyAsked(second),
                     "GetNthMenuItem(2)", KeyAsked(third)}));
}

TEST_F(MenuTreeTest, ItemsThatCannotBeCountedAreNotLookedAt) {
    host.AddItem("A", "Label");
    host.calls.FailAfterWork("CountMenuItems", 1);
    const Outcome outcome = Add({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.calls[1], "Initialize('Text', 1)");
}

// --- refusals -------------------------------------------------------------------------------------------------------

TEST_F(MenuTreeTest, RefusedItemIsRegisteredUnderTheNullHandle) {
    host.calls.Fail("AddMenuItem", 77);
    const Outcome outcome = Add({.hasSubMenu = 1});
    EXPECT_EQ(outcome.result, 77);
    EXPECT_EQ(outcome.calls, (Calls{"CountMenuItems()", "Initialize('Text', 1)",
                                    "AddMenuItem(null, 'Type Plugins1', 'Text', 1)", "Destroy()"}));
    EXPECT_EQ(outcome.log, Framed({CallingLine("Label", "Type Plugins1", "Text", "0x00000001", nullptr)}));
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{0, "id"}}));
}

TEST_F(MenuTreeTest, LastRefusedItemIsTheOneUnderTheNullHandle) {
    host.calls.FailAlways("AddMenuItem", 77);
    Add({.id = "first"});
    Add({.id = "second"});
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{0, "second"}}));
}

TEST_F(MenuTreeTest, RefusedItemThatHasAHandleAllTheSameIsRegisteredUnderItAndGetsItsSubMenu) {
    host.model.menus.NeedGroup("P");
    host.calls.FailAfterWork("AddMenuItem", 77);
    const Outcome outcome = Add({.hasSubMenu = 1, .parentID = "P"});
    EXPECT_EQ(outcome.result, 77);
    EXPECT_EQ(outcome.calls[2], "AddMenuGroupAsSubMenu('Label', 0, " + HandleText(LastItem()) + ")");
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{KeyOf(LastItem()), "id"}}));
}

TEST_F(MenuTreeTest, HandleThatTheHostGivesTwiceKeepsTheLaterIdentifier) {
    Add({.id = "first"});
    host.model.menus.items.Reuse(LastItem());
    Add({.id = "second"});
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{KeyOf(LastItem()), "second"}}));
}

TEST_F(MenuTreeTest, TextThatTheHostRefusesIsAnsweredWithTheHostsCodeAndThrownToNobody) {
    host.calls.Fail("Initialize", 1431193940);
    const Outcome outcome = Add({});
    EXPECT_EQ(outcome.result, 1431193940);
    EXPECT_EQ(outcome.calls, (Calls{"CountMenuItems()", "Initialize('Text', 1)"}));
    EXPECT_EQ(outcome.log, Framed({}));
    EXPECT_TRUE(RegisteredMenuItems().empty());
}

TEST_F(MenuTreeTest, ExceptionOfAnotherCompilerOutOfTheHostIsAnsweredAndNotThrownIntoThePluginCore) {
    host.calls.During("CountMenuItems", ThrowLikeAnotherCompiler);
    EXPECT_EQ(Add({}).result, kBadParameterErr);
    EXPECT_TRUE(RegisteredMenuItems().empty());
}

// Identifier, label and group are handed on as they came. Of the text the host makes a string, or refuses to.
TEST_F(MenuTreeTest, BrokenUtf8IsAnsweredAndThrownToNobody) {
    for (const char* const broken : {"\xC3", "a\xFF", "\xED\xA0\x80", "\xF0\x9F\x98"}) {
        SCOPED_TRACE(broken);
        host.model.menus.NeedGroup(broken);
        EXPECT_EQ(Add({.id = broken}).result, 0);
        EXPECT_EQ(RegisteredMenuItems().rbegin()->second, broken);
        EXPECT_EQ(Add({.label = broken}).result, 0);
        EXPECT_EQ(Add({.parentID = broken}).result, 0);
        EXPECT_EQ(Add({.itemText = broken}).result, static_cast<std::int32_t>(FourCharCode("BSTR")));
        EXPECT_EQ(host.LiveStrings(), 0);
    }
}

TEST_F(MenuTreeTest, NullIdentifierLabelOrContextIsABadParameter) {
    EXPECT_EQ(Add({.id = nullptr}).result, kBadParameterErr);
    EXPECT_EQ(Add({.label = nullptr}).result, kBadParameterErr);
    EXPECT_EQ(AddIllustratorMenu("id", "Label", "Text", 0, 0, 0, nullptr, nullptr), kBadParameterErr);
    EXPECT_EQ(host.calls.Count("AddMenuItem"), 0);
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "Exiting AddIllustratorMenu()"}));
}

TEST_F(MenuTreeTest, MemoryThatRunsOutAnywhereThrowsNothingIntoThePluginCoreAndGivesTheTextBack) {
    host.AddItem("Item", "a key that is long enough to need memory");
    int attempts = 0;
    ThePluginCore().script["CreateMenusFromJSONBuffer"].during = [&] {
        bool hasRunOut = true;
        for (int nth = 1; hasRunOut; ++nth) {
            std::int32_t result = -1;
            {
                const FailingAllocation memory(nth);
                result = CallBack({.id = "an identifier that is long enough to need memory",
                                   .label = "a label that is long enough to need memory / and a slash",
                                   .hasSubMenu = 1});
                hasRunOut = memory.HasHappened();
            }
            EXPECT_EQ(result, hasRunOut ? kBadParameterErr : 0) << nth;
            EXPECT_EQ(host.LiveStrings(), 0) << nth;
            ++attempts;
        }
    };
    EXPECT_EQ(AddAll(), 0);
    EXPECT_GT(attempts, 2);
}

}  // namespace
