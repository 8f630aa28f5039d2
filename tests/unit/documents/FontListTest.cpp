#include "documents/FontList.h"

#include <gmock/gmock.h>

#include "doubles/common/AllocationFaults.h"

namespace {

FontRecord Font(const std::string& name) { return {{"PostScriptName", name}}; }

TEST(FontListTest, NameOfARecordIsItsEntryAndElseEmpty) {
    EXPECT_EQ(PostScriptNameOf({{"other", "x"}, {"PostScriptName", "Helvetica"}}), "Helvetica");
    EXPECT_EQ(PostScriptNameOf({{"other", "x"}}), "");
    EXPECT_EQ(PostScriptNameOf({}), "");
}

TEST(FontListTest, KeepsTheOrderInWhichRecordsCameAndRepeats) {
    FontList fonts;
    EXPECT_TRUE(fonts.empty());
    for (const char* name : {"C", "A", "B", "A"}) {
        fonts.Append(Font(name));
    }
    EXPECT_THAT(fonts, testing::ElementsAre(Font("C"), Font("A"), Font("B"), Font("A")));
    EXPECT_EQ(fonts.size(), 4u);
    EXPECT_FALSE(fonts.empty());
    EXPECT_EQ(fonts, (FontList{Font("C"), Font("A"), Font("B"), Font("A")}));
    EXPECT_FALSE(fonts == (FontList{Font("A"), Font("B"), Font("C"), Font("A")}));
}

TEST(FontListTest, ContainsWhatWasAppendedToTheByte) {
    const FontList fonts = {Font("Helvetica"), Font("")};
    EXPECT_TRUE(fonts.Contains("Helvetica"));
    EXPECT_TRUE(fonts.Contains(""));
    EXPECT_FALSE(fonts.Contains("helvetica"));
    EXPECT_FALSE(fonts.Contains("Helvetic"));
    EXPECT_FALSE(fonts.Contains(std::string_view("Helvetica\0", 10)));
    EXPECT_FALSE(FontList().Contains(""));
}

TEST(FontListTest, WithoutMemoryNothingIsAppended) {
    FontList fonts = {Font("first")};
    const FontRecord record = Font("a name that is too long to lie inside a string");
    bool happened = true;
    std::size_t failures = 0;
    for (; happened; failures += happened ? 1 : 0) {
        const FailingAllocation failure(failures + 1);
        try {
            fonts.Append(record);
        } catch (const std::bad_alloc&) {
            EXPECT_EQ(fonts, FontList{Font("first")});
            EXPECT_FALSE(fonts.Contains("a name that is too long to lie inside a string"));
        }
        happened = failure.HasHappened();
    }
    EXPECT_LE(3u, failures);  // the record's entry, its name, and its place in the index
    EXPECT_TRUE(fonts.Contains("a name that is too long to lie inside a string"));
}

TEST(FontListTest, RecordWithoutANameIsFoundAsEmpty) { EXPECT_TRUE((FontList{{{"other", "x"}}}).Contains("")); }

// The list keeps copies, and they stay where they are while it grows.
TEST(FontListTest, ContainsEachOfThousandsHoweverTheListHasGrown) {
    const auto nameOf = [](int n) { return "Garamond" + std::to_string(n) + "-MediumCondensed"; };
    FontList fonts;
    for (int n = 0; n < 3000; ++n) {
        EXPECT_FALSE(fonts.Contains(nameOf(n))) << n;
        FontRecord record = Font(nameOf(n));
        fonts.Append(record);
        record.begin()->second = "overwritten";
    }
    for (int n = 0; n < 3000; ++n) {
        EXPECT_TRUE(fonts.Contains(nameOf(n))) << n;
    }
    EXPECT_FALSE(fonts.Contains("overwritten"));
    EXPECT_EQ(fonts.begin()->at("PostScriptName"), nameOf(0));
}

TEST(FontListTest, SearchTakesNoMemory) {
    const FontList fonts = {Font("AvenirNextCondensed-MediumItalic")};
    const std::size_t before = AllocationsMade();
    EXPECT_TRUE(fonts.Contains("AvenirNextCondensed-MediumItalic"));
    EXPECT_FALSE(fonts.Contains("AvenirNextCondensed-HeavyItalic"));
    EXPECT_EQ(AllocationsMade() - before, 0u);
}

}  // namespace
