// The description is parsed when its text changes, and searched without the heap: counts, which hold on any machine.
#include <new>
#include <stdexcept>

#include "doubles/common/AllocationFaults.h"
#include "json/JsonParser.h"
#include "support/TextConversion.h"
#include "unit/menus/MenuMessagesFixture.h"

namespace {

constexpr int kManyItems = 28;  // as many as fit into the reply

// Longer than what a string holds inside itself.
std::string LongTitle(int number) { return "Title of item number " + std::to_string(number); }

class MenuDescriptionKeptTest : public MenuMessagesTest {
  protected:
    // The items below one another at the top level, the first `registered` of them in the host's menu.
    std::string RegisterMany(int described, int registered) {
        std::string json;
        for (int i = 0; i < described; ++i) {
            const std::string id = "identifier of " + std::to_string(i);
            if (i < registered) {
                items.push_back(Register(LongTitle(i), id));
            }
            json += (i == 0 ? "" : ",") + ItemJson(id, LongTitle(i));
        }
        return "[" + json + "]";
    }

    std::size_t AllocationsOfUpdate(AIMenuItemHandle item) {
        const std::size_t before = AllocationsMade();
        Update(item);
        return AllocationsMade() - before;
    }

    static std::size_t AllocationsOfParsing(const std::string& json) {
        const std::wstring text = Utf16FromUtf8(json);
        const std::size_t before = AllocationsMade();
        const std::unique_ptr<JsonValue> root = ParseJson(text);
        return AllocationsMade() - before;
    }

    std::vector<AIMenuItemHandle> items;
};

TEST_F(MenuDescriptionKeptTest, OpeningAMenuParsesOnceAndAsksEachTime) {
    const std::string json = RegisterMany(kManyItems, kManyItems);
    Describe(json);
    std::size_t allocations = 0;
    for (const AIMenuItemHandle item : items) {
        allocations += AllocationsOfUpdate(item);
    }
    // Each text of an item becomes UTF-8 once for the titles and once for the identifiers.
    const std::size_t once = AllocationsOfParsing(json) + 2 * kManyItems;
    constexpr std::size_t kPerUpdate = 8;  // the document's path, the item's text
    EXPECT_GT(allocations, AllocationsOfParsing(json));
    EXPECT_LT(allocations, once + kManyItems * kPerUpdate);
    EXPECT_EQ(PluginCoreCalls().size(), kManyItems);
    EXPECT_EQ(Marks().size(), 2u * kManyItems * kManyItems);
}

TEST_F(MenuDescriptionKeptTest, SearchingForMoreItemsTakesNoMoreBlocks) {
    Describe(RegisterMany(kManyItems, 1));
    Update(items.front());
    const std::size_t searchesTwice = AllocationsOfUpdate(items.front());
    for (int i = 1; i < kManyItems; ++i) {
        Register("another", "identifier of " + std::to_string(i));
    }
    Update(items.front());
    EXPECT_EQ(AllocationsOfUpdate(items.front()), searchesTwice);
    EXPECT_EQ(Marks().size(), 2u * (1 + 1 + kManyItems + kManyItems));
}

TEST_F(MenuDescriptionKeptTest, ChangedTextIsParsedAndTheOneOfBeforeForgotten) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    const std::string enabled = ItemJson("a", "Fonts", "true");
    const std::string disabled = ItemJson("a", "Fonts", "false");
    for (const std::string& json : {enabled, disabled, enabled, disabled}) {
        Describe(json);
        Update(item);
    }
    EXPECT_EQ(Marks(), (Calls{Enabled(item), Checked(item, 0), Disabled(item), Checked(item, 0), Enabled(item),
                              Checked(item, 0), Disabled(item), Checked(item, 0)}));
    const std::ptrdiff_t before = LiveAllocations();
    for (const std::string& json : {enabled, disabled}) {
        Describe(json);
        Update(item);
    }
    EXPECT_EQ(LiveAllocations(), before);
}

TEST_F(MenuDescriptionKeptTest, TextThatNoLongerComesIsNoLongerSearched) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Describe(ItemJson("a", "Fonts"));
    Update(item);
    const std::size_t marks = Marks().size();
    for (const char* json : {"", "{", "[]"}) {
        Describe(json);
        Update(item);
        EXPECT_EQ(Marks().size(), marks) << json;
    }
}

TEST_F(MenuDescriptionKeptTest, FaultThatOneSearchMetIsMetByEachThatComesAsFar) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    const AIMenuItemHandle second = Register("Sets", "b");
    Describe("[" + ItemJson("a", "Fonts") + R"(,{"id":"x"},)" + ItemJson("b", "Sets") + "]");
    for (int i = 0; i < 3; ++i) {
        // The title stands in front of the fault; of the identifiers, the second one behind it.
        EXPECT_THROW(Update(item), std::out_of_range);
        EXPECT_EQ(Marks().size(), 2u * (static_cast<std::size_t>(i) + 1));
        EXPECT_THROW(Update(second), std::out_of_range);
        EXPECT_EQ(Marks().size(), 2u * (static_cast<std::size_t>(i) + 1));
    }
}

TEST_F(MenuDescriptionKeptTest, UpdateForWhichMemoryRanOutIsMadeUpForByTheNext) {
    const std::string json = "[" + ItemJson("top", LongTitle(1), "true", "false", RegisterMany(5, 5)) + "]";
    std::size_t failures = 0;
    for (bool happened = true; happened; ++failures) {
        Describe("");
        Update(items.back());
        Describe(json);
        {
            const FailingAllocation failure(failures + 1);
            try {
                Update(items.back());
            } catch (const std::bad_alloc&) {
            }
            happened = failure.HasHappened();
        }
        const std::size_t marks = Marks().size();
        Update(items.back());
        ASSERT_EQ(Marks().size(), marks + 10) << "allocation " << failures + 1;
    }
    EXPECT_GT(failures, 20u);
}

}  // namespace
