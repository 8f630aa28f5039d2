#include "menus/MenuMessages.h"

#include "menus/MenuTree.h"
#include "unit/menus/MenuMessagesFixture.h"

namespace {

using Calls = std::vector<std::string>;
using Log = std::vector<RecordedLine>;

// --- updateMenuItem -------------------------------------------------------------------------------------------------

TEST_F(MenuMessagesTest, UpdateSetsTheMarksOfAnItem) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Describe(ItemJson("a", "Fonts", "true", "true"));
    EXPECT_EQ(Update(item), 0);
    EXPECT_EQ(PluginCoreCalls(), Calls{"GetMenus('C:/Pl\xC3\xA4ne/a.ai', 4096 zeros, 4096)"});
    EXPECT_EQ(host.calls.Calls(),
              (Calls{"GetDocumentFileSpecification()", "GetFullPath(0)", "Destroy()", "DeleteFilePath()",
                     "AcquireSuite('AI Menu Suite', 11)", "GetItemText(" + HandleText(item) + ")", Enabled(item),
                     Checked(item, 1), "Destroy()", "ReleaseSuite('AI Menu Suite', 11)"}));
}

TEST_F(MenuMessagesTest, UpdateLogsItsFrameAndEachSearch) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Register("Sets", "gone");
    Describe(ItemJson("a", "Fonts"));
    Update(item);
    const Log log = RecordedLog();
    ASSERT_EQ(log.size(), 10u);
    EXPECT_EQ(log.front(), (RecordedLine{1, "Entering updateMenuItem"}));
    // Lines 1 and 2 are those of the document's path.
    EXPECT_EQ(Log(log.begin() + 3, log.end()), (Log{{1, "Entering GetMenuObject(..., Fonts, ...)"},
                                                    {-1, "Exiting GetMenuObject(..., Fonts, ...) with result 0"},
                                                    {1, "Entering GetMenuObject(..., a, ...)"},
                                                    {-1, "Exiting GetMenuObject(..., a, ...) with result 0"},
                                                    {1, "Entering GetMenuObject(..., gone, ...)"},
                                                    {-1, "Exiting GetMenuObject(..., gone, ...) with result 352321536"},
                                                    {-1, "updateMenuItem returning 0"}}));
}

TEST_F(MenuMessagesTest, SuiteGoesBackAfterTheResultIsLogged) {
    RecordedLine whenReleased{};
    host.calls.During("ReleaseSuite", [&] { whenReleased = RecordedLog().back(); });
    Update(Register("Fonts", "a"));
    EXPECT_EQ(whenReleased, (RecordedLine{-1, "updateMenuItem returning 0"}));
}

TEST_F(MenuMessagesTest, UpdateDisablesAndUnchecks) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Describe(ItemJson("a", "Fonts", "false", "false"));
    Update(item);
    EXPECT_EQ(Marks(), (Calls{Disabled(item), Checked(item, 0)}));
}

TEST_F(MenuMessagesTest, UpdateOfOneItemSetsTheMarksOfAllInTheOrderOfTheirHandles) {
    const AIMenuItemHandle low = host.AddItem("Low", {}, host.plugin);
    const AIMenuItemHandle named = host.AddItem("Named", {}, host.plugin);
    const AIMenuItemHandle high = host.AddItem("High", {}, host.plugin);
    MenuItemID(high) = "high";
    MenuItemID(low) = "low";
    MenuItemID(named) = "n";
    Describe("[" + ItemJson("high", "H", "false") + "," + ItemJson("n", "Named") + "," +
             ItemJson("low", "L", "true", "true") + "]");
    EXPECT_EQ(Update(named), 0);
    EXPECT_EQ(Marks(), (Calls{Enabled(low), Checked(low, 1), Enabled(named), Checked(named, 0), Disabled(high),
                              Checked(high, 0)}));
}

TEST_F(MenuMessagesTest, ItemsAreFoundAmongTheChildren) {
    const AIMenuItemHandle item = Register("Child", "c");
    Describe(ItemJson("top", "Top", "true", "false", "[" + ItemJson("c", "Child", "false", "true") + "]"));
    Update(item);
    EXPECT_EQ(Marks(), (Calls{Disabled(item), Checked(item, 1)}));
}

TEST_F(MenuMessagesTest, ItemThatTheDescriptionDoesNotKnowIsLeftAsItIsAndTheOthersAreSet) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Register("Gone", "gone");
    const AIMenuItemHandle last = Register("Sets", "b");
    Describe("[" + ItemJson("b", "Sets") + "," + ItemJson("a", "Fonts") + "]");
    Update(item);
    EXPECT_EQ(Marks(), (Calls{Enabled(item), Checked(item, 0), Enabled(last), Checked(last, 0)}));
}

TEST_F(MenuMessagesTest, TitleThatTheDescriptionDoesNotKnowIsAGateThatStaysShut) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Describe(ItemJson("a", "Other title"));
    EXPECT_EQ(Update(item), 0);
    EXPECT_EQ(Marks(), Calls{});
    EXPECT_EQ(CountRecorded("Entering GetMenuObject(..., a, ...)"), 0);
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "updateMenuItem returning 0"}));
}

TEST_F(MenuMessagesTest, GateIsOpenedByTheTitleAloneWhateverItsItem) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Describe("[" + ItemJson("stranger", "Fonts") + "," + ItemJson("a", "Other", "false") + "]");
    Update(item);
    EXPECT_EQ(Marks(), (Calls{Disabled(item), Checked(item, 0)}));
}

TEST_F(MenuMessagesTest, TitleIsComparedAsUtf8) {
    const AIMenuItemHandle item = Register(
        "Gr\xC3\xB6\xC3\x9F"
        "e \xE6\x96\x87",
        "a");
    Describe(ItemJson("a",
                      "Gr\xC3\xB6\xC3\x9F"
                      "e \xE6\x96\x87"));
    Update(item);
    EXPECT_EQ(Marks().size(), 2u);
}

TEST_F(MenuMessagesTest, ItemOfSomebodyElseOpensTheGateToo) {
    Register("Fonts", "a");
    const AIMenuItemHandle foreign = host.AddItem("Fonts");
    Describe(ItemJson("a", "Fonts"));
    Update(foreign);
    EXPECT_EQ(Marks().size(), 2u);
    EXPECT_EQ(RegisteredMenuItems().size(), 1u);
}

TEST_F(MenuMessagesTest, TextThatTheHostDoesNotTellEndsTheUpdate) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Describe(ItemJson("a", "Fonts"));
    host.calls.FailAfterWork("GetItemText", 3);
    EXPECT_EQ(Update(item), 0);
    EXPECT_EQ(Marks(), Calls{});
    EXPECT_EQ(CountRecorded("Entering GetMenuObject(..., Fonts, ...)"), 0);
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "updateMenuItem returning 0"}));
    EXPECT_EQ(host.calls.Calls().back(), "ReleaseSuite('AI Menu Suite', 11)");
}

TEST_F(MenuMessagesTest, RefusedMarksDoNotCount) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Register("Sets", "b");
    Describe("[" + ItemJson("a", "Fonts") + "," + ItemJson("b", "Sets", "false") + "]");
    host.calls.FailAlways("EnableItem", 1);
    host.calls.FailAlways("DisableItem", 1);
    host.calls.FailAlways("CheckItem", 1);
    EXPECT_EQ(Update(item), 0);
    EXPECT_EQ(Marks().size(), 4u);
}

TEST_F(MenuMessagesTest, ItemThatTheHostRefusedHasNothingToBeMarked) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    MenuItemID(nullptr) = "refused";
    Describe("[" + ItemJson("refused", "Refused") + "," + ItemJson("a", "Fonts") + "]");
    Update(item);
    EXPECT_EQ(Marks(), (Calls{Enabled(item), Checked(item, 0)}));
}

TEST_F(MenuMessagesTest, RefusedMenuSuiteIsThrownAsTheHostsCode) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    host.RefuseSuite("AI Menu Suite", 55);
    try {
        Update(item);
        FAIL();
    } catch (std::int32_t code) {
        EXPECT_EQ(code, 55);
    }
    EXPECT_EQ(host.calls.Count("GetItemText"), 0);
    EXPECT_EQ(host.calls.Count("ReleaseSuite"), 0);
}

TEST_F(MenuMessagesTest, DescriptionIsFetchedBeforeTheMenuSuiteIsAcquired) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    int acquired = -1;
    ThePluginCore().script["GetMenus"].during = [&] { acquired = host.calls.Count("AcquireSuite"); };
    Update(item);
    EXPECT_EQ(acquired, 0);
}

// --- GoMenuItem -----------------------------------------------------------------------------------------------------

TEST_F(MenuMessagesTest, ChoiceScansTheDocumentThenIsReported) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    host.textFrames = {{"Minion-Regular"}};
    ThePluginCore().script["GetIDForDocument"].text = "document 7";
    EXPECT_EQ(Go(item), 0);
    EXPECT_EQ(PluginCoreCalls(),
              (Calls{"GetIDForDocument('C:/Pl\xC3\xA4ne/a.ai', 256 zeros, 256)",
                     "UpdateDocumentFontUsage('document 7', "
                     R"('{"DocumentFonts":[{"PostScriptName":"Minion-Regular"}],"LinkedDocuments":[]}'))",
                     "HandleMenuSelection('document 7', '', 'a')"}));
}

TEST_F(MenuMessagesTest, ChoiceLogsItsFrame) {
    Go(Register("Fonts", "a"));
    EXPECT_EQ(RecordedLog().front(), (RecordedLine{1, "Entering GoMenuItem()"}));
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "GoMenuItem() returning 0"}));
}

TEST_F(MenuMessagesTest, DocumentIsScannedAfterItsIdentifierWasAsked) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    int scans = -1;
    ThePluginCore().script["GetIDForDocument"].during = [&] { scans = host.calls.Count("GetMatchingArt"); };
    Go(item);
    EXPECT_EQ(scans, 0);
    EXPECT_GT(host.calls.Count("GetMatchingArt"), 0);
}

TEST_F(MenuMessagesTest, ChoiceOfAnItemThatWasNeverRegisteredSendsAnEmptyIdentifierAndEntersIt) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    EXPECT_EQ(Go(reinterpret_cast<AIMenuItemHandle>(0x77)), 0);
    EXPECT_EQ(Selection(), "HandleMenuSelection('', '', '')");
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{0x77, ""}, {KeyOf(item), "a"}}));
}

TEST_F(MenuMessagesTest, ResultsOfThePluginCoreDoNotCount) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    ThePluginCore().script["GetIDForDocument"].text = "half an answer";
    for (const char* entry : {"GetIDForDocument", "UpdateDocumentFontUsage", "HandleMenuSelection"}) {
        ThePluginCore().script.Fail(entry, 9);
    }
    EXPECT_EQ(Go(item), 0);
    EXPECT_EQ(Selection(), "HandleMenuSelection('half an answer', '', 'a')");
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "GoMenuItem() returning 0"}));
}

TEST_F(MenuMessagesTest, IdentifierThatFillsTheWholeBufferIsHandedOnWhole) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    ThePluginCore().script["GetIDForDocument"].text = std::string(256, 'd');
    Go(item);
    EXPECT_EQ(Selection(), "HandleMenuSelection('" + std::string(256, 'd') + "', '', 'a')");
}

TEST_F(MenuMessagesTest, ChoiceWithoutADocumentIsReportedAllTheSame) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    host.calls.FailAlways("GetDocumentFileSpecification", 1);
    EXPECT_EQ(Go(item), 0);
    EXPECT_EQ(PluginCoreCalls().front(), "GetIDForDocument('', 256 zeros, 256)");
    EXPECT_EQ(PluginCoreCalls().size(), 3u);
}

// --- the description that both share --------------------------------------------------------------------------------

TEST_F(MenuMessagesTest, ChoiceSendsTheDescriptionThatTheLastUpdateRead) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Describe("first");
    Update(item);
    Go(item);
    EXPECT_EQ(Selection(), "HandleMenuSelection('', 'first', 'a')");
    Describe("second and longer");
    Update(item);
    Describe("third");
    Update(item);
    Go(item);
    EXPECT_EQ(Selection(), "HandleMenuSelection('', 'third', 'a')");
}

TEST_F(MenuMessagesTest, StartupDoesNotFillTheDescription) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Describe("[]");
    AddAllQuorvelMenuItems();
    Go(item);
    EXPECT_EQ(Selection(), "HandleMenuSelection('', '', 'a')");
}

TEST_F(MenuMessagesTest, FailureToFetchKeepsTheDescriptionOfBefore) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Describe("before");
    Update(item);
    Describe("never");
    ThePluginCore().script.Fail("GetMenus", 1);
    EXPECT_EQ(Update(item), 0);
    Go(item);
    EXPECT_EQ(Selection(), "HandleMenuSelection('', 'before', 'a')");
}

TEST_F(MenuMessagesTest, WhatAFailingFetchLeftInTheBufferIsSearchedAllTheSame) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Describe(ItemJson("a", "Fonts"));
    ThePluginCore().script.Fail("GetMenus", 1);
    Update(item);
    EXPECT_EQ(Marks().size(), 2u);
}

TEST_F(MenuMessagesTest, DescriptionEndsAtItsFirstZeroByte) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Describe(std::string("short\0behind", 12));
    Update(item);
    Go(item);
    EXPECT_EQ(Selection(), "HandleMenuSelection('', 'short', 'a')");
}

TEST_F(MenuMessagesTest, DescriptionThatFillsTheWholeBufferIsKeptWhole) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Describe(std::string(4096, 'x'));
    Update(item);
    Go(item);
    EXPECT_EQ(Selection(), "HandleMenuSelection('', '" + std::string(4096, 'x') + "', 'a')");
}

TEST_F(MenuMessagesTest, EmptyDescriptionReplacesTheOneBefore) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Describe("before");
    Update(item);
    ThePluginCore().script["GetMenus"].text.reset();
    Update(item);
    Go(item);
    EXPECT_EQ(Selection(), "HandleMenuSelection('', '', 'a')");
}

TEST_F(MenuMessagesTest, DescriptionIsKeptEvenWhenTheMenuSuiteIsRefused) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Describe("kept");
    host.RefuseSuite("AI Menu Suite", 55);
    EXPECT_THROW(Update(item), std::int32_t);
    Go(item);
    EXPECT_EQ(Selection(), "HandleMenuSelection('', 'kept', 'a')");
}

}  // namespace
