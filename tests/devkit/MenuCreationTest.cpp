#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "devkit/LoadedDouble.h"

namespace {

using Flag = std::uint8_t;
using MenuCallback = std::int32_t (*)(const char* id, const char* label, const char* itemText, Flag checked,
                                      Flag enabled, Flag hasSubMenu, const char* parentId, void* context);
using CreateMenus = std::int32_t (*)(const char* json, MenuCallback callback, void* context);

constexpr std::int32_t kRefused = 0x9000000;

struct Asked {
    std::vector<std::string> items;  // one line per item, all arguments in their order
    std::string refuse;              // the identifier of an item
};

std::string TextOrNull(const char* text) { return text == nullptr ? "null" : "'" + std::string(text) + "'"; }

std::int32_t Ask(const char* id, const char* label, const char* itemText, Flag checked, Flag enabled, Flag hasSubMenu,
                 const char* parentId, void* context) {
    auto& asked = *static_cast<Asked*>(context);
    asked.items.push_back(TextOrNull(id) + " " + TextOrNull(label) + " " + TextOrNull(itemText) + " " +
                          std::to_string(checked) + std::to_string(enabled) + std::to_string(hasSubMenu) + " " +
                          TextOrNull(parentId));
    return asked.refuse == id ? kRefused : 0;
}

class MenuCreation : public testing::Test {
  protected:
    std::vector<std::string> Create(const char* json) {
        mResult = mLibrary.Get<CreateMenus>("CreateMenusFromJSONBuffer")(json, &Ask, &mAsked);
        return mAsked.items;
    }

    LoadedDouble mLibrary{L"PluginCoreX64.dll", L"QUORVEL_PLUGINCORE", "{}"};
    Asked mAsked;
    std::int32_t mResult = -1;
};

using Items = std::vector<std::string>;

TEST_F(MenuCreation, AsksForParentsBeforeTheirChildrenDepthFirst) {
    EXPECT_EQ(Create(R"([{"id":"a","title":"A","child":[{"id":"b","title":"B","child":[{"id":"c","title":"C"}]},
                         {"id":"d","title":"D"}]},{"id":"e","title":"E"}])"),
              (Items{"'a' 'A' 'A' 011 null", "'b' 'B' 'B' 011 'A'", "'c' 'C' 'C' 010 'B'", "'d' 'D' 'D' 010 'A'",
                     "'e' 'E' 'E' 010 null"}));
}

TEST_F(MenuCreation, ASingleItemMayBeTheRoot) {
    EXPECT_EQ(Create(R"({"id":"a","title":"A","child":[]})"), Items{"'a' 'A' 'A' 010 null"});
}

TEST_F(MenuCreation, PassesTheMarksOfTheDescription) {
    EXPECT_EQ(Create(R"([{"id":"a","title":"A","checked":true,"enabled":false},
                         {"id":"b","title":"B","checked":false,"enabled":true}])"),
              (Items{"'a' 'A' 'A' 100 null", "'b' 'B' 'B' 010 null"}));
}

TEST_F(MenuCreation, AnOwnLabelGoesBeforeTheTitleAndNamesTheParentOfTheChildren) {
    EXPECT_EQ(Create(R"([{"id":"a","title":"A","label":"L","child":[{"id":"b","title":"B"}]}])"),
              (Items{"'a' 'L' 'A' 011 null", "'b' 'B' 'B' 010 'L'"}));
}

TEST_F(MenuCreation, AMissingTitleIsANullTextAndAnEmptyOneIsEmpty) {
    EXPECT_EQ(Create(R"([{"id":"a","title":null},{"id":"b"},{"id":"c","title":""}])"),
              (Items{"'a' '' null 010 null", "'b' '' null 010 null", "'c' '' '' 010 null"}));
}

TEST_F(MenuCreation, GoesOnWhenAnItemIsRefused) {
    mAsked.refuse = "a";
    EXPECT_EQ(Create(R"([{"id":"a","title":"A","child":[{"id":"b","title":"B"}]},{"id":"c","title":"C"}])").size(), 3U);
    EXPECT_EQ(mResult, 0);
    EXPECT_NE(mLibrary.Record().find(R"("items":["a -> 0x09000000","b -> 0","c -> 0"])"), std::string::npos);
}

TEST_F(MenuCreation, WhatIsNoDescriptionHasNoItems) {
    for (const char* const json : {"", "[{", "12", "\"a\"", "null", "[]", "[1,\"a\",null,[{\"id\":\"a\"}]]"}) {
        EXPECT_EQ(Create(json), Items{}) << json;
        EXPECT_EQ(mResult, 0) << json;
    }
    EXPECT_EQ(Create(nullptr), Items{});
}

}  // namespace
