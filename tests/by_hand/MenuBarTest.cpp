// The menu bar as Windows holds it, compared with the model.
#include "simhost/by_hand/MenuBar.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "by_hand/MenuReading.h"
#include "doubles/host/model/MenuModel.h"
#include "host/MenuSuite.h"

namespace {

using by_hand::LinesOf;
using Lines = std::vector<std::string>;

constexpr UINT kFirstCommand = 1000;

class MenuBarTest : public testing::Test {
  protected:
    ~MenuBarTest() override { DestroyWindow(mWindow); }

    const void* Add(const char* group, const char* text, std::int32_t options = 0) {
        return mModel.items.Add({group, text, {}, nullptr, options, true, false});
    }
    void AddGroup(const char* name, const void* item) { mModel.groups.Add({name, item}); }
    simhost::MenuItem& Item(const void* handle) { return *mModel.items.Find(handle); }
    HMENU Shown() {
        mBar.ShowIn(mWindow, mModel);
        return GetMenu(mWindow);
    }
    // By the labels that lead to it, as in {"Fonts", "Activate"}.
    static UINT CommandOf(HMENU menu, const std::vector<std::string>& labels) {
        return by_hand::CommandOf(menu, labels);
    }

    HWND mWindow = CreateWindowExW(0, L"STATIC", L"MenuBarTest", WS_OVERLAPPEDWINDOW, 0, 0, 300, 200, nullptr, nullptr,
                                   GetModuleHandleW(nullptr), nullptr);
    simhost::MenuModel mModel;
    simhost::MenuBar mBar{kFirstCommand};
};

TEST_F(MenuBarTest, ShowsGroupsItemsSubMenusMarksAndStatesInTheirOrder) {
    const void* const fonts = Add("Type Plugins1", "Fonts");
    AddGroup("Fonts", fonts);
    Add("Fonts", "Activate");
    Item(Add("Fonts", "Automatic")).checked = true;
    Item(Add("Fonts", "Not Now")).enabled = false;
    simhost::MenuItem& both = Item(Add("Fonts", "Never"));
    both.enabled = false;
    both.checked = true;
    Add("Type Plugins1", "", kMenuItemIsSeparator);
    Add("Type Plugins1", "About");
    mModel.NeedGroup("Window");
    Add("Window", "Panel");
    EXPECT_EQ(LinesOf(Shown()), (Lines{"Type Plugins1 >", "  Fonts >", "    Activate", "    Automatic (checked)",
                                       "    Not Now (disabled)", "    Never (checked) (disabled)", "  ---", "  About",
                                       "Window >", "  Panel"}));
}

TEST_F(MenuBarTest, SubMenuOfASubMenuAndTwoGroupsBelowOneItem) {
    const void* const fonts = Add("Type Plugins1", "Fonts");
    AddGroup("First", fonts);
    AddGroup("Second", fonts);
    const void* const more = Add("First", "More");
    Add("Second", "Last");
    AddGroup("Deep", more);
    Add("Deep", "Deepest");
    EXPECT_EQ(LinesOf(Shown()),
              (Lines{"Type Plugins1 >", "  Fonts >", "    More >", "      Deepest", "    ---", "    Last"}));
}

TEST_F(MenuBarTest, GroupWithoutItemsCannotBeOpened) {
    EXPECT_EQ(LinesOf(Shown()), Lines{"Type Plugins1 > (disabled)"});
}

TEST_F(MenuBarTest, AmpersandIsALetter) {
    Add("Type Plugins1", "Fonts & More");
    EXPECT_EQ(LinesOf(Shown()), (Lines{"Type Plugins1 >", "  Fonts && More"}));
}

TEST_F(MenuBarTest, RefreshChangesTextMarkAndStateInPlace) {
    const void* const item = Add("Type Plugins1", "Automatic");
    Add("Type Plugins1", "", kMenuItemIsSeparator);
    const void* const other = Add("Type Plugins1", "About");
    const HMENU menu = GetSubMenu(Shown(), 0);
    Item(item) = {"Type Plugins1", "Automatically", {}, nullptr, 0, false, true};
    Item(other).checked = true;
    mBar.Refresh(menu, mModel);
    EXPECT_EQ(LinesOf(menu), (Lines{"Automatically (checked) (disabled)", "---", "About (checked)"}));
    Item(item).enabled = true;
    Item(item).checked = false;
    mBar.Refresh(menu, mModel);
    EXPECT_EQ(LinesOf(menu), (Lines{"Automatically", "---", "About (checked)"}));
}

TEST_F(MenuBarTest, MenuAboutToOpenHasItsOwnItemsAlone) {
    const void* const fonts = Add("Type Plugins1", "Fonts");
    AddGroup("Fonts", fonts);
    const void* const activate = Add("Fonts", "Activate");
    const void* const about = Add("Type Plugins1", "About");
    const HMENU top = GetSubMenu(Shown(), 0);
    EXPECT_EQ(mBar.ItemsOf(top), (std::vector<const void*>{fonts, about}));
    EXPECT_EQ(mBar.ItemsOf(GetSubMenu(top, 0)), std::vector<const void*>{activate});
    EXPECT_TRUE(mBar.ItemsOf(nullptr).empty());
}

TEST_F(MenuBarTest, ChoiceThatArrivesWhenTheBarWasBuiltAnewIsStillThatItem) {
    const void* const first = Add("Type Plugins1", "First");
    const void* const second = Add("Type Plugins1", "Second");
    const UINT command = CommandOf(Shown(), {"Type Plugins1", "Second"});
    EXPECT_EQ(mBar.ItemOf(command), second);
    mModel.items.Remove(first);
    const void* const third = Add("Type Plugins1", "Third");
    const HMENU anew = Shown();
    EXPECT_EQ(mBar.ItemOf(command), second);
    EXPECT_EQ(CommandOf(anew, {"Type Plugins1", "Second"}), command);
    EXPECT_EQ(mBar.ItemOf(CommandOf(anew, {"Type Plugins1", "Third"})), third);
}

TEST_F(MenuBarTest, CommandOfNobodyIsNoItem) {
    Add("Type Plugins1", "First");
    Shown();
    EXPECT_EQ(mBar.ItemOf(kFirstCommand - 1), nullptr);
    EXPECT_EQ(mBar.ItemOf(kFirstCommand + 1), nullptr);
}

}  // namespace
