#include "menus/MenuItemRegistry.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

AIMenuItemHandle Handle(std::uint64_t number) { return reinterpret_cast<AIMenuItemHandle>(number); }

TEST(MenuItemRegistryTest, StartsEmpty) { EXPECT_TRUE(RegisteredMenuItems().empty()); }

TEST(MenuItemRegistryTest, UnknownHandleIsEnteredWithAnEmptyIdentifier) {
    EXPECT_EQ(MenuItemID(Handle(5)), "");
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{5, ""}}));
}

TEST(MenuItemRegistryTest, IdentifierIsKeptAndReplaced) {
    MenuItemID(Handle(5)) = "first";
    EXPECT_EQ(MenuItemID(Handle(5)), "first");
    MenuItemID(Handle(5)) = "second";
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{5, "second"}}));
}

TEST(MenuItemRegistryTest, AllBitsOfAHandleCount) {
    MenuItemID(Handle(0x0000000100005001)) = "one";
    MenuItemID(Handle(0x0000000200005001)) = "two";
    MenuItemID(Handle(0x0000000000005001)) = "three";
    EXPECT_EQ(RegisteredMenuItems(),
              (MenuItemMap{{0x0000000000005001, "three"}, {0x0000000100005001, "one"}, {0x0000000200005001, "two"}}));
}

TEST(MenuItemRegistryTest, NullHandleIsAnEntryLikeAnyOther) {
    MenuItemID(nullptr) = "refused";
    EXPECT_EQ(RegisteredMenuItems(), (MenuItemMap{{0, "refused"}}));
    EXPECT_EQ(MenuItemHandleOf(*RegisteredMenuItems().begin()), nullptr);
}

TEST(MenuItemRegistryTest, EntriesAreInTheOrderOfUnsignedHandles) {
    for (const std::uint64_t number : {0x8000000000000001ull, 2ull, 0xFFFFFFFFFFFFFFF0ull, 1ull}) {
        MenuItemID(Handle(number)) = "x";
    }
    std::vector<AIMenuItemHandle> handles;
    for (const auto& entry : RegisteredMenuItems()) {
        handles.push_back(MenuItemHandleOf(entry));
    }
    EXPECT_EQ(handles, (std::vector{Handle(1), Handle(2), Handle(0x8000000000000001), Handle(0xFFFFFFFFFFFFFFF0)}));
}

}  // namespace
