#include "menus/MenuTree.h"

#include "frame/SuiteOperations.h"
#include "host/HostError.h"
#include "host/MenuSuite.h"
#include "menus/MenuItemRegistry.h"
#include "support/fakes/MemoryRunningOut.h"
#include "unit/menus/MenuFixture.h"

namespace {

using Calls = std::vector<std::string>;
using Log = std::vector<RecordedLine>;

constexpr std::uint64_t kFirstHandle = 0x100005001;

// What the PluginCore passes for one item.
struct Item {
    const char* id = "id";
    const char* label = "Label";
    const char* itemText = "Text";
    std::uint8_t checked = 0;
    std::uint8_t enabled = 1;
    std::uint8_t hasSubMenu = 0;
    const char* parentID = nullptr;
};

// What one call of the callback did.
struct Outcome {
    std::int32_t result = -1;
    Log log;
    Calls calls;
};

class MenuTreeTest : public MenuTest {
  protected:
    std::int32_t AddAll() {
        SPInterfaceMessage startup{host.MessageData()};
        return AddAllQuorvelMenuItems(&startup);
    }

    // Has the PluginCore add an item, and tells what that did; what surrounds it is left out.
    Outcome Add(const Item& item) {
        Outcome outcome;
        ThePluginCore().duringEntry["CreateMenusFromJSONBuffer"] = [&] {
            host.calls.Clear();
            ClearRecordedLog();
            outcome.result = CallBack(item);
            outcome.log = RecordedLog();
            outcome.calls = host.calls.Calls();
            context = Shown(ThePluginCore().menuContext);
        };
        AddAll();
        return outcome;
    }

    static std::int32_t CallBack(const Item& item) {
        return ThePluginCore().menuCallback(item.id, item.label, item.itemText, item.checked, item.enabled,
                                            item.hasSubMenu, item.parentID, ThePluginCore().menuContext);
    }

    // The lines of one call with `inner` in between.
    Log Framed(const std::string& arguments, const Calls& inner) const {
        Log lines = {{1, "Entering AddIllustratorMenu(" + arguments + ", " + context + ")"}};
        for (const std::string& line : inner) {
            lines.push_back({0, line});
        }
        lines.push_back({-1, "Exiting AddIllustratorMenu()"});
        return lines;
    }
    Log Framed(const Calls& inner) const {
        return Framed("id='id', label='Label', checked=0, enabled=1, parentID=(null)", inner);
    }

    static std::string CallingLine(const std::string& label, const std::string& group, const std::string& text,
                                   const std::string& options, const std::string& handle) {
        return "Calling AddMenuItem(SPPluginRef=0x11110000, itemKeyWithIllegalCharsRemoved='" + label +
               "', menuData.groupName='" + group + "', menuData.itemText='" + text + "', options=" + options +
               ", pMenuItem=" + handle;
    }

    std::string context;
};

// --- AddAllQuorvelMenuItems -----------------------------------------------------------------------------------------

TEST_F(MenuTreeTest, DescriptionOfTheCurrentDocumentIsHandedBackToThePluginCore) {
    host.currentPath = "C:/Pl\xC3\xA4ne/a.ai";
    ThePluginCore().replies["GetMenus"] = R"([{"id":"x"}])";
    EXPECT_EQ(AddAll(), 0);
    EXPECT_EQ(PluginCoreCalls(), (Calls{"GetMenus('C:/Pl\xC3\xA4ne/a.ai', 4096 zeros, 4096)",
                                        R"(CreateMenusFromJSONBuffer('[{"id":"x"}]'))"}));
    EXPECT_EQ(ThePluginCore().menuCallback, &AddIllustratorMenu);
}

TEST_F(MenuTreeTest, MenuSuiteIsHeldWhileThePluginCoreAddsItems) {
    host.currentPath = "C:/a.ai";
    std::map<std::string, int> held;
    ThePluginCore().duringEntry["CreateMenusFromJSONBuffer"] = [&] { held = host.HeldSuites(); };
    Calls whenFetched;
    ThePluginCore().duringEntry["GetMenus"] = [&] { whenFetched = host.calls.Calls(); };
    AddAll();
    EXPECT_EQ(held, (std::map<std::string, int>{{"AI Menu Suite", 1}}));
    const Calls pathCalls = {"GetDocumentFileSpecification()", "GetFullPath(0)", "Destroy()", "DeleteFilePath()"};
    EXPECT_EQ(whenFetched, pathCalls);
    EXPECT_EQ(host.calls.Calls(), (Calls{pathCalls[0], pathCalls[1], pathCalls[2], pathCalls[3],
                                         "AcquireSuite('AI Menu Suite', 11)", "ReleaseSuite('AI Menu Suite', 11)"}));
}

TEST_F(MenuTreeTest, ResultOfThePluginCoreIsReturnedAndLogged) {
    ThePluginCore().calls.Fail("CreateMenusFromJSONBuffer", -7);
    EXPECT_EQ(AddAll(), -7);
    EXPECT_EQ(RecordedLog().front(), (RecordedLine{1, "Entering AddAllQuorvelMenuItems()"}));
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "AddAllQuorvelMenuItems() returning -7"}));
}

TEST_F(MenuTreeTest, SuiteGoesBackAfterTheResultIsLogged) {
    RecordedLine whenReleased{};
    host.duringOperation["ReleaseSuite"] = [&] { whenReleased = RecordedLog().back(); };
    AddAll();
    EXPECT_EQ(whenReleased, (RecordedLine{-1, "AddAllQuorvelMenuItems() returning 0"}));
}

TEST_F(MenuTreeTest, FailureToFetchTheDescriptionHandsAnEmptyOneOn) {
    ThePluginCore().calls.Fail("GetMenus", 9);
    EXPECT_EQ(AddAll(), 0);
    EXPECT_EQ(PluginCoreCalls(), (Calls{"GetMenus('', 4096 zeros, 4096)", "CreateMenusFromJSONBuffer('')"}));
}

TEST_F(MenuTreeTest, DescriptionThatFillsTheWholeBufferIsHandedBackWhole) {
    ThePluginCore().replies["GetMenus"] = std::string(4096, 'm');
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
    ThePluginCore().throwingEntry = "CreateMenusFromJSONBuffer";
    EXPECT_ANY_THROW(AddAll());
    EXPECT_EQ(host.calls.Calls().back(), "ReleaseSuite('AI Menu Suite', 11)");
}

// --- AddIllustratorMenu: a plain item -------------------------------------------------------------------------------

TEST_F(MenuTreeTest, TopLevelItemIsAddedWithoutAKeyAndAsksForUpdates) {
    const Outcome outcome = Add({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.calls, (Calls{"CountMenuItems()", "Initialize('Text', 1)",
                                    "AddMenuItem(null, 'Type Plugins1', 'Text', 1)", "Destroy()"}));
    EXPECT_EQ(outcome.log, Framed({CallingLine("Label", "Type Plugins1", "Text", "0x00000001", "0x00005001")}));
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{kFirstHandle, "id"}}));
}

TEST_F(MenuTreeTest, ItemWithAParentGoesIntoTheParentsGroupAndIsNotCheckedForDuplicates) {
    host.menus.Add("Other", "Label");
    const Outcome outcome = Add({.checked = 1, .enabled = 0, .parentID = "Parent"});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.calls, (Calls{"Initialize('Text', 1)", "AddMenuItem(null, 'Parent', 'Text', 1)", "Destroy()"}));
    EXPECT_EQ(outcome.log, Framed("id='id', label='Label', checked=1, enabled=0, parentID=Parent",
                                  {CallingLine("Label", "Parent", "Text", "0x00000001", "0x00005002")}));
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
    EXPECT_EQ(outcome.log, Framed({CallingLine("Label", "Type Plugins1", "(null)", "0x00000004", "0x00005001")}));
}

TEST_F(MenuTreeTest, ItemWithAnEmptyTextIsASeparator) {
    const Outcome outcome = Add({.itemText = ""});
    EXPECT_EQ(outcome.calls, (Calls{"CountMenuItems()", "AddMenuItem(null, 'Type Plugins1', '', 4)"}));
    EXPECT_EQ(outcome.log, Framed({CallingLine("Label", "Type Plugins1", "", "0x00000004", "0x00005001")}));
}

TEST_F(MenuTreeTest, CheckedAndEnabledAreNotAppliedHere) {
    Add({.checked = 1, .enabled = 0});
    for (const char* operation : {"EnableItem", "DisableItem", "CheckItem"}) {
        EXPECT_EQ(host.calls.Count(operation), 0) << operation;
    }
}

TEST_F(MenuTreeTest, SubMenuIsAGroupNamedByTheLabelOfItsItem) {
    const Outcome outcome = Add({.hasSubMenu = 1, .parentID = "Parent"});
    EXPECT_EQ(outcome.calls, (Calls{"Initialize('Text', 1)", "AddMenuItem(null, 'Parent', 'Text', 1)",
                                    "AddMenuGroupAsSubMenu('Label', 0, 0x100005001)", "Destroy()"}));
}

TEST_F(MenuTreeTest, AnyNonZeroByteMakesASubMenu) {
    Add({.hasSubMenu = 0x80});
    EXPECT_EQ(host.calls.Count("AddMenuGroupAsSubMenu"), 1);
}

TEST_F(MenuTreeTest, RefusedSubMenuDoesNotCount) {
    host.calls.Fail("AddMenuGroupAsSubMenu", 5);
    EXPECT_EQ(Add({.hasSubMenu = 1}).result, 0);
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{kFirstHandle, "id"}}));
}

TEST_F(MenuTreeTest, ItemsOfOneDescriptionAreAllRegistered) {
    ThePluginCore().duringEntry["CreateMenusFromJSONBuffer"] = [] {
        EXPECT_EQ(CallBack({.id = "top", .label = "Fonts", .hasSubMenu = 1}), 0);
        EXPECT_EQ(CallBack({.id = "child", .label = "Child", .parentID = "Fonts"}), 0);
        EXPECT_EQ(CallBack({.id = "line", .itemText = nullptr, .parentID = "Fonts"}), 0);
    };
    EXPECT_EQ(AddAll(), 0);
    EXPECT_EQ(RegisteredMenuItems(),
              (MenuItemMap{{kFirstHandle, "top"}, {kFirstHandle + 1, "child"}, {kFirstHandle + 2, "line"}}));
}

// --- AddIllustratorMenu: duplicates ---------------------------------------------------------------------------------

TEST_F(MenuTreeTest, TopLevelLabelThatIsAKeyAlreadyIsRefusedAfterOneLinePerEqualItem) {
    host.menus.Add("Fonts", "Label");
    host.menus.Add("Other", "Another");
    host.menus.Add("Fonts again", "Label");
    const Outcome outcome = Add({});
    EXPECT_EQ(outcome.result, 0x9000000);
    EXPECT_EQ(outcome.calls,
              (Calls{"CountMenuItems()", "GetNthMenuItem(0)", "GetMenuItemKeyboardShortcutDictionaryKey(0x100005001)",
                     "GetNthMenuItem(1)", "GetMenuItemKeyboardShortcutDictionaryKey(0x100005002)", "GetNthMenuItem(2)",
                     "GetMenuItemKeyboardShortcutDictionaryKey(0x100005003)"}));
    const std::string line = "Error: 'Label' menu item already present.";
    EXPECT_EQ(outcome.log, Framed({line, line}));
    EXPECT_TRUE(RegisteredMenuItems().empty());
}

TEST_F(MenuTreeTest, DuplicateIsRefusedWhereverItStands) {
    host.menus.Add("Other", "Another");
    host.menus.Add("Fonts", "Label");
    EXPECT_EQ(Add({}).result, 0x9000000);
    EXPECT_EQ(host.calls.Count("AddMenuItem"), 0);
}

TEST_F(MenuTreeTest, KeysAreComparedByteForByte) {
    for (const char* key : {"label", "Labe", "Label ", "LABEL", ""}) {
        host.menus.Add("Item", key);
    }
    EXPECT_EQ(Add({}).result, 0);
    EXPECT_EQ(host.calls.Count("AddMenuItem"), 1);
}

TEST_F(MenuTreeTest, TextOfAnItemIsNoKey) {
    host.menus.Add("Label", "Another");
    EXPECT_EQ(Add({}).result, 0);
}

TEST_F(MenuTreeTest, ItemWithoutAKeyIsNoDuplicate) {
    host.menus.Add("Item");
    EXPECT_EQ(Add({}).result, 0);
    EXPECT_EQ(Add({.label = ""}).result, 0);
}

TEST_F(MenuTreeTest, IndicesWhereTheHostFailsArePassedOver) {
    host.menus.Add("A", "Label");
    host.menus.Add("B", "Label");
    host.menus.Add("C", "Another");
    host.calls.Fail("GetNthMenuItem", 1, 1);
    host.calls.Fail("GetMenuItemKeyboardShortcutDictionaryKey", 1, 1);
    const Outcome outcome = Add({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(Calls(outcome.calls.begin(), outcome.calls.begin() + 6),
              (Calls{"CountMenuItems()", "GetNthMenuItem(0)", "GetNthMenuItem(1)",
                     "GetMenuItemKeyboardShortcutDictionaryKey(0x100005002)", "GetNthMenuItem(2)",
                     "GetMenuItemKeyboardShortcutDictionaryKey(0x100005003)"}));
}

TEST_F(MenuTreeTest, ItemsThatCannotBeCountedAreNotLookedAt) {
    host.menus.Add("A", "Label");
    host.calls.Fail("CountMenuItems", 1);
    const Outcome outcome = Add({});
    EXPECT_EQ(outcome.result, 0);
    EXPECT_EQ(outcome.calls[1], "Initialize('Text', 1)");
}

// --- AddIllustratorMenu: slashes ------------------------------------------------------------------------------------

TEST_F(MenuTreeTest, SlashesOfTheLabelAreReplacedInTheLogAloneAndTheKeyStaysNull) {
    const Outcome outcome = Add({.label = "Fonts/Styles/Sets", .hasSubMenu = 1});
    EXPECT_EQ(outcome.log,
              Framed("id='id', label='Fonts/Styles/Sets', checked=0, enabled=1, parentID=(null)",
                     {"Replaced char at position 5 to make 'Fonts-Styles/Sets'",
                      "Replaced char at position 12 to make 'Fonts-Styles-Sets'",
                      CallingLine("Fonts/Styles/Sets", "Type Plugins1", "Text", "0x00000001", "0x00005001")}));
    EXPECT_EQ(outcome.calls,
              (Calls{"CountMenuItems()", "Initialize('Text', 1)", "AddMenuItem(null, 'Type Plugins1', 'Text', 1)",
                     "AddMenuGroupAsSubMenu('Fonts/Styles/Sets', 0, 0x100005001)", "Destroy()"}));
}

TEST_F(MenuTreeTest, SlashesAtTheEndsOfTheLabelAndBackslashes) {
    const Outcome outcome = Add({.label = "/a\\b/", .parentID = "P"});
    EXPECT_EQ(outcome.log[1], (RecordedLine{0, "Replaced char at position 0 to make '-a\\b/'"}));
    EXPECT_EQ(outcome.log[2], (RecordedLine{0, "Replaced char at position 4 to make '-a\\b-'"}));
    EXPECT_EQ(outcome.log.size(), 5u);
}

TEST_F(MenuTreeTest, DuplicateIsFoundByTheLabelAsItIsAndReplacesNothing) {
    host.menus.Add("A", "a-b");
    EXPECT_EQ(Add({.label = "a/b"}).result, 0);
    host.menus.Add("B", "a/b");
    const Outcome outcome = Add({.label = "a/b"});
    EXPECT_EQ(outcome.result, 0x9000000);
    EXPECT_EQ(outcome.log, Framed("id='id', label='a/b', checked=0, enabled=1, parentID=(null)",
                                  {"Error: 'a/b' menu item already present."}));
}

// --- AddIllustratorMenu: refusals -----------------------------------------------------------------------------------

TEST_F(MenuTreeTest, RefusedItemIsRegisteredUnderTheNullHandle) {
    host.calls.Fail("AddMenuItem", 77);
    const Outcome outcome = Add({.hasSubMenu = 1});
    EXPECT_EQ(outcome.result, 77);
    EXPECT_EQ(outcome.calls, (Calls{"CountMenuItems()", "Initialize('Text', 1)",
                                    "AddMenuItem(null, 'Type Plugins1', 'Text', 1)", "Destroy()"}));
    EXPECT_EQ(outcome.log, Framed({CallingLine("Label", "Type Plugins1", "Text", "0x00000001", "0x00000000")}));
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{0, "id"}}));
}

TEST_F(MenuTreeTest, LastRefusedItemIsTheOneUnderTheNullHandle) {
    host.calls.FailAlways("AddMenuItem", 77);
    Add({.id = "first"});
    Add({.id = "second"});
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{0, "second"}}));
}

TEST_F(MenuTreeTest, RefusedItemThatHasAHandleAllTheSameIsRegisteredUnderItAndGetsItsSubMenu) {
    host.menus.nextHandles = {reinterpret_cast<AIMenuItemHandle>(0x42)};
    host.calls.Fail("AddMenuItem", 77);
    const Outcome outcome = Add({.hasSubMenu = 1, .parentID = "P"});
    EXPECT_EQ(outcome.result, 77);
    EXPECT_EQ(outcome.calls[2], "AddMenuGroupAsSubMenu('Label', 0, 0x42)");
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{0x42, "id"}}));
}

TEST_F(MenuTreeTest, HandleThatTheHostGivesTwiceKeepsTheLaterIdentifier) {
    const auto handle = reinterpret_cast<AIMenuItemHandle>(0x42);
    host.menus.nextHandles = {handle, handle};
    Add({.id = "first"});
    Add({.id = "second"});
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{0x42, "second"}}));
}

TEST_F(MenuTreeTest, TextThatTheHostRefusesIsAnsweredWithTheHostsCodeAndThrownToNobody) {
    host.calls.Fail("Initialize", 1431193940);
    const Outcome outcome = Add({});
    EXPECT_EQ(outcome.result, 1431193940);
    EXPECT_EQ(outcome.calls, (Calls{"CountMenuItems()", "Initialize('Text', 1)"}));
    EXPECT_EQ(outcome.log, Framed({}));
    EXPECT_TRUE(RegisteredMenuItems().empty());
}

TEST_F(MenuTreeTest, NullIdentifierLabelOrContextIsABadParameter) {
    EXPECT_EQ(Add({.id = nullptr}).result, kBadParameterErr);
    EXPECT_EQ(Add({.label = nullptr}).result, kBadParameterErr);
    EXPECT_EQ(AddIllustratorMenu("id", "Label", "Text", 0, 0, 0, nullptr, nullptr), kBadParameterErr);
    EXPECT_EQ(host.calls.Count("AddMenuItem"), 0);
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "Exiting AddIllustratorMenu()"}));
}

TEST_F(MenuTreeTest, MemoryThatRunsOutAnywhereThrowsNothingIntoThePluginCoreAndGivesTheTextBack) {
    host.menus.Add("Item", "a key that is long enough to need memory");
    int attempts = 0;
    ThePluginCore().duringEntry["CreateMenusFromJSONBuffer"] = [&] {
        bool hasRunOut = true;
        for (int nth = 1; hasRunOut; ++nth) {
            std::int32_t result = -1;
            {
                const MemoryRunningOut memory(nth);
                result = CallBack({.id = "an identifier that is long enough to need memory",
                                   .label = "a label that is long enough to need memory / and a slash",
                                   .hasSubMenu = 1});
                hasRunOut = MemoryRunningOut::HasRunOut();
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
