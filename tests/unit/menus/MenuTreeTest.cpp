#include "menus/MenuTree.h"

#include "unit/menus/MenuTreeFixture.h"

namespace {

using Calls = std::vector<std::string>;

// --- AddAllQuorvelMenuItems -----------------------------------------------------------------------------------------

TEST_F(MenuTreeTest, DescriptionOfTheCurrentDocumentIsHandedBackToThePluginCore) {
    host.currentPath = "C:/Pl\xC3\xA4ne/a.ai";
    ThePluginCore().script["GetMenus"].text = R"([{"id":"x"}])";
    EXPECT_EQ(AddAll(), 0);
    EXPECT_EQ(PluginCoreCalls(), (Calls{"GetMenus('C:/Pl\xC3\xA4ne/a.ai', 4096 zeros, 4096)",
                                        R"(CreateMenusFromJSONBuffer('[{"id":"x"}]'))"}));
    EXPECT_EQ(ThePluginCore().menuCallback, &AddIllustratorMenu);
}

TEST_F(MenuTreeTest, MenuSuiteIsHeldWhileThePluginCoreAddsItems) {
    host.currentPath = "C:/a.ai";
    std::map<std::string, int> held;
    ThePluginCore().script["CreateMenusFromJSONBuffer"].during = [&] { held = host.HeldSuites(); };
    Calls whenFetched;
    ThePluginCore().script["GetMenus"].during = [&] { whenFetched = host.calls.Calls(); };
    AddAll();
    EXPECT_EQ(held, (std::map<std::string, int>{{"AI Menu Suite", 1}}));
    const Calls pathCalls = {"GetDocumentFileSpecification()", "GetFullPath(0)", "Destroy()", "DeleteFilePath()"};
    EXPECT_EQ(whenFetched, pathCalls);
    EXPECT_EQ(host.calls.Calls(), (Calls{pathCalls[0], pathCalls[1], pathCalls[2], pathCalls[3],
                                         "AcquireSuite('AI Menu Suite', 11)", "ReleaseSuite('AI Menu Suite', 11)"}));
}

TEST_F(MenuTreeTest, ResultOfThePluginCoreIsReturnedAndLogged) {
    ThePluginCore().script.Fail("CreateMenusFromJSONBuffer", -7);
    EXPECT_EQ(AddAll(), -7);
    EXPECT_EQ(RecordedLog().front(), (RecordedLine{1, "Entering AddAllQuorvelMenuItems()"}));
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "AddAllQuorvelMenuItems() returning -7"}));
}

TEST_F(MenuTreeTest, SuiteGoesBackAfterTheResultIsLogged) {
    RecordedLine whenReleased{};
    host.calls.During("ReleaseSuite", [&] { whenReleased = RecordedLog().back(); });
    AddAll();
    EXPECT_EQ(whenReleased, (RecordedLine{-1, "AddAllQuorvelMenuItems() returning 0"}));
}

TEST_F(MenuTreeTest, FailureToFetchTheDescriptionHandsAnEmptyOneOn) {
    ThePluginCore().script.Fail("GetMenus", 9);
    EXPECT_EQ(AddAll(), 0);
    EXPECT_EQ(PluginCoreCalls(), (Calls{"GetMenus('', 4096 zeros, 4096)", "CreateMenusFromJSONBuffer('')"}));
}

TEST_F(MenuTreeTest, WhatAFailingFetchLeftInTheBufferIsHandedOnAllTheSame) {
    ThePluginCore().script["GetMenus"].text = "left behind";
    ThePluginCore().script.Fail("GetMenus", 9);
    EXPECT_EQ(AddAll(), 0);
    EXPECT_EQ(PluginCoreCalls(), (Calls{"GetMenus('', 4096 zeros, 4096)", "CreateMenusFromJSONBuffer('left behind')"}));
}

TEST_F(MenuTreeTest, DescriptionThatFillsTheWholeBufferIsHandedBackWhole) {
    ThePluginCore().script["GetMenus"].text = std::string(4096, 'm');
    AddAll();
    EXPECT_EQ(PluginCoreCalls().back(), "CreateMenusFromJSONBuffer('" + std::string(4096, 'm') + "')");
}

TEST_F(MenuTreeTest, WithoutADocumentThePathIsEmpty) {
    host.currentPath = "C:/a.ai";
    host.calls.Fail("GetDocumentFileSpecification", 4);
    EXPECT_EQ(AddAll(), 0);
    EXPECT_EQ(PluginCoreCalls().front(), "GetMenus('', 4096 zeros, 4096)");
}

TEST_F(MenuTreeTest, RefusedMenuSuiteIsThrownAsTheHostsCode) {
    host.RefuseSuite("AI Menu Suite", 1397641038);
    try {
        AddAll();
        FAIL();
    } catch (std::int32_t code) {
        EXPECT_EQ(code, 1397641038);
    }
    EXPECT_EQ(PluginCoreCalls(), Calls{"GetMenus('', 4096 zeros, 4096)"});
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{0, "ERROR:  throwing 1397641038."}));
    EXPECT_EQ(host.calls.Count("ReleaseSuite"), 0);
}

TEST_F(MenuTreeTest, ExceptionOfThePluginCoreStillGivesTheSuiteBack) {
    ThePluginCore().script["CreateMenusFromJSONBuffer"].throws = doubles::Throw::kForeignException;
    EXPECT_ANY_THROW(AddAll());
    EXPECT_EQ(host.calls.Calls().back(), "ReleaseSuite('AI Menu Suite', 11)");
}

// --- AddIllustratorMenu: a plain item -------------------------------------------------------------------------------

TEST_F(MenuTreeTest, TopLevelItemIsAddedWithoutAKeyAndAsksForUpdates) {
    const Outcome outcome = Add({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.calls, (Calls{"CountMenuItems()", "Initialize('Text', 1)",
                                    "AddMenuItem(null, 'Type Plugins1', 'Text', 1)", "Destroy()"}));
    EXPECT_EQ(outcome.log, Framed({CallingLine("Label", "Type Plugins1", "Text", "0x00000001", LastItem())}));
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{KeyOf(LastItem()), "id"}}));
}

TEST_F(MenuTreeTest, ItemWithAParentGoesIntoTheParentsGroupAndIsNotCheckedForDuplicates) {
    host.AddItem("Other", "Label");
    host.model.menus.NeedGroup("Parent");
    const Outcome outcome = Add({.checked = 1, .enabled = 0, .parentID = "Parent"});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.calls, (Calls{"Initialize('Text', 1)", "AddMenuItem(null, 'Parent', 'Text', 1)", "Destroy()"}));
    EXPECT_EQ(outcome.log, Framed("id='id', label='Label', checked=1, enabled=0, parentID=Parent",
                                  {CallingLine("Label", "Parent", "Text", "0x00000001", LastItem())}));
}

TEST_F(MenuTreeTest, EmptyParentIsAParent) {
    EXPECT_EQ(Add({.parentID = ""}).calls[1], "AddMenuItem(null, '', 'Text', 1)");
}

TEST_F(MenuTreeTest, TextIsHandedOnAsUtf8) {
    EXPECT_EQ(Add({.itemText = "Schriften \xC3\xBC\x62\x65r \xE6\x96\x87"}).calls[2],
              "AddMenuItem(null, 'Type Plugins1', 'Schriften \xC3\xBC\x62\x65r \xE6\x96\x87', 1)");
}

TEST_F(MenuTreeTest, ItemWithoutATextIsASeparator) {
    const Outcome outcome = Add({.itemText = nullptr});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.calls, (Calls{"CountMenuItems()", "AddMenuItem(null, 'Type Plugins1', '', 4)"}));
    EXPECT_EQ(outcome.log, Framed({CallingLine("Label", "Type Plugins1", "(null)", "0x00000004", LastItem())}));
}

TEST_F(MenuTreeTest, ItemWithAnEmptyTextIsASeparator) {
    const Outcome outcome = Add({.itemText = ""});
    EXPECT_EQ(outcome.calls, (Calls{"CountMenuItems()", "AddMenuItem(null, 'Type Plugins1', '', 4)"}));
    EXPECT_EQ(outcome.log, Framed({CallingLine("Label", "Type Plugins1", "", "0x00000004", LastItem())}));
}

TEST_F(MenuTreeTest, CheckedAndEnabledAreNotAppliedHere) {
    Add({.checked = 1, .enabled = 0});
    for (const char* operation : {"EnableItem", "DisableItem", "CheckItem"}) {
        EXPECT_EQ(host.calls.Count(operation), 0) << operation;
    }
}

TEST_F(MenuTreeTest, SubMenuIsAGroupNamedByTheLabelOfItsItem) {
    host.model.menus.NeedGroup("Parent");
    const Outcome outcome = Add({.hasSubMenu = 1, .parentID = "Parent"});
    EXPECT_EQ(outcome.calls, (Calls{"Initialize('Text', 1)", "AddMenuItem(null, 'Parent', 'Text', 1)",
                                    "AddMenuGroupAsSubMenu('Label', 0, " + HandleText(LastItem()) + ")", "Destroy()"}));
}

TEST_F(MenuTreeTest, AnyNonZeroByteMakesASubMenu) {
    Add({.hasSubMenu = 0x80});
    EXPECT_EQ(host.calls.Count("AddMenuGroupAsSubMenu"), 1);
}

TEST_F(MenuTreeTest, RefusedSubMenuDoesNotCount) {
    host.calls.Fail("AddMenuGroupAsSubMenu", 5);
    EXPECT_EQ(Add({.hasSubMenu = 1}).result, 0);
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{KeyOf(LastItem()), "id"}}));
}

TEST_F(MenuTreeTest, ItemsOfOneDescriptionAreAllRegistered) {
    ThePluginCore().script["CreateMenusFromJSONBuffer"].during = [] {
        EXPECT_EQ(CallBack({.id = "top", .label = "Fonts", .hasSubMenu = 1}), 0);
        EXPECT_EQ(CallBack({.id = "child", .label = "Child", .parentID = "Fonts"}), 0);
        EXPECT_EQ(CallBack({.id = "line", .itemText = nullptr, .parentID = "Fonts"}), 0);
    };
    EXPECT_EQ(AddAll(), 0);
    const std::vector<AIMenuItemHandle> items = host.Items();
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(RegisteredMenuItems(),
              (MenuItemMap{{KeyOf(items[0]), "top"}, {KeyOf(items[1]), "child"}, {KeyOf(items[2]), "line"}}));
}

// --- AddIllustratorMenu: slashes ------------------------------------------------------------------------------------

TEST_F(MenuTreeTest, SlashesOfTheLabelAreReplacedInTheLogAloneAndTheKeyStaysNull) {
    const Outcome outcome = Add({.label = "Fonts/Styles/Sets", .hasSubMenu = 1});
    EXPECT_EQ(outcome.log,
              Framed("id='id', label='Fonts/Styles/Sets', checked=0, enabled=1, parentID=(null)",
                     {"Replaced char at position 5 to make 'Fonts-Styles/Sets'",
                      "Replaced char at position 12 to make 'Fonts-Styles-Sets'",
                      CallingLine("Fonts/Styles/Sets", "Type Plugins1", "Text", "0x00000001", LastItem())}));
    EXPECT_EQ(outcome.calls,
              (Calls{"CountMenuItems()", "Initialize('Text', 1)", "AddMenuItem(null, 'Type Plugins1', 'Text', 1)",
                     "AddMenuGroupAsSubMenu('Fonts/Styles/Sets', 0, " + HandleText(LastItem()) + ")", "Destroy()"}));
}

TEST_F(MenuTreeTest, SlashesAtTheEndsOfTheLabelAndBackslashes) {
    const Outcome outcome = Add({.label = "/a\\b/", .parentID = "P"});
    EXPECT_EQ(outcome.log[1], (RecordedLine{0, "Replaced char at position 0 to make '-a\\b/'"}));
    EXPECT_EQ(outcome.log[2], (RecordedLine{0, "Replaced char at position 4 to make '-a\\b-'"}));
    EXPECT_EQ(outcome.log.size(), 5u);
}

TEST_F(MenuTreeTest, DuplicateIsFoundByTheLabelAsItIsAndReplacesNothing) {
    host.AddItem("A", "a-b");
    EXPECT_EQ(Add({.label = "a/b"}).result, 0);
    host.AddItem("B", "a/b");
    const Outcome outcome = Add({.label = "a/b"});
    EXPECT_EQ(outcome.result, 0x9000000);
    EXPECT_EQ(outcome.log, Framed("id='id', label='a/b', checked=0, enabled=1, parentID=(null)",
                                  {"Error: 'a/b' menu item already present."}));
}

}  // namespace
