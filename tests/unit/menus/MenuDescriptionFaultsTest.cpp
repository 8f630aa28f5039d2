// Negative tests of updateMenuItem: descriptions with faults.
#include <utf8cpp/utf8.h>

#include <stdexcept>
#include <variant>

#include "unit/menus/MenuMessagesFixture.h"

namespace {

// Nothing in it can be searched, or the item's text is not there.
class UnusableDescriptionTest : public MenuMessagesTest, public testing::WithParamInterface<const char*> {};

TEST_P(UnusableDescriptionTest, ChangesNothing) {
    const AIMenuItemHandle item = Register("Fonts", "a");
    Describe(GetParam());
    EXPECT_EQ(Update(item), 0);
    EXPECT_EQ(Marks(), Calls{});
    EXPECT_EQ(RecordedLog().back(), (RecordedLine{-1, "updateMenuItem returning 0"}));
}

INSTANTIATE_TEST_SUITE_P(Texts, UnusableDescriptionTest,
                         testing::Values("", "{", "[]", "[1,2]", "17", "\"Fonts\"", "{\"id\":\"\xFF\"}",
                                         "[{\"id\":\"b\",\"title\":\"Sets\",\"child\":[]}]"));

// Two items of the plug-in's; the first one gets its marks before the update meets the fault.
class MenuDescriptionFaultsTest : public MenuMessagesTest {
  protected:
    enum class Failure { None, LacksMember, OtherKind, UnpairedSurrogate };

    Failure FailureOfUpdate() {
        try {
            Update(item);
        } catch (const std::out_of_range& exception) {
            EXPECT_STREQ(exception.what(), "invalid map<K, T> key");
            return Failure::LacksMember;
        } catch (const std::bad_variant_access&) {
            return Failure::OtherKind;
        } catch (const utf8::exception&) {
            return Failure::UnpairedSurrogate;
        }
        return Failure::None;
    }

    // The update fails in this way after it has set these marks, and gives the suite back.
    void ExpectAbandoned(const std::string& description, Failure failure, const Calls& marks) {
        Describe(description);
        EXPECT_EQ(FailureOfUpdate(), failure);
        EXPECT_EQ(Marks(), marks);
        EXPECT_EQ(host.calls.Calls().back(), "ReleaseSuite('AI Menu Suite', 11)");
        EXPECT_EQ(CountRecorded("updateMenuItem returning 0"), 0);
    }

    const AIMenuItemHandle item = Register("Fonts", "a");
    const AIMenuItemHandle second = Register("Sets", "b");
    const Calls marksOfFirst = {Enabled(item), Checked(item, 0)};
    const Calls marksOfFirstAndEnabledSecond = {Enabled(item), Checked(item, 0), Enabled(second)};
};

// In front of the faulty item.
std::string Behind(const std::string& faulty) { return "[" + ItemJson("a", "Fonts") + "," + faulty + "]"; }

TEST_F(MenuDescriptionFaultsTest, RootThatIsNoObjectIsLogged) {
    Describe("17");
    Update(item);
    EXPECT_EQ(CountRecorded("The root element is not an object."), 1);
    EXPECT_EQ(CountRecorded("Exiting GetMenuObject(..., Fonts, ...) with result 67108864"), 1);
}

class MissingMemberTest : public MenuDescriptionFaultsTest, public testing::WithParamInterface<const char*> {};

TEST_P(MissingMemberTest, OfTheItemLookedForAbandonsTheUpdateBeforeAnyMark) {
    ExpectAbandoned(GetParam(), Failure::LacksMember, {});
}

INSTANTIATE_TEST_SUITE_P(Items, MissingMemberTest,
                         testing::Values(R"({"id":"a","child":null})", R"({"id":"a","title":"Fonts"})",
                                         R"({"title":"Fonts","child":null})",
                                         R"({"id":"a","title":"Fonts","child":null,"checked":true})"));

TEST_F(MenuDescriptionFaultsTest, MissingEnabledMarkAbandonsTheUpdateAndTheMarksOfTheOthersStay) {
    ExpectAbandoned(Behind(R"({"id":"b","title":"Sets","child":null,"checked":true})"), Failure::LacksMember,
                    marksOfFirst);
}

TEST_F(MenuDescriptionFaultsTest, MissingCheckMarkAbandonsTheUpdateAndTheEnabledMarkStays) {
    ExpectAbandoned(Behind(R"({"id":"b","title":"Sets","child":null,"enabled":true})"), Failure::LacksMember,
                    marksOfFirstAndEnabledSecond);
}

class MarkOfAnotherKindTest : public MenuDescriptionFaultsTest, public testing::WithParamInterface<const char*> {};

TEST_P(MarkOfAnotherKindTest, ForEnabledAbandonsTheUpdateAndTheMarksOfTheOthersStay) {
    ExpectAbandoned(Behind(ItemJson("b", "Sets", GetParam())), Failure::OtherKind, marksOfFirst);
}

TEST_P(MarkOfAnotherKindTest, ForCheckedAbandonsTheUpdateAndTheEnabledMarkStays) {
    ExpectAbandoned(Behind(ItemJson("b", "Sets", "true", GetParam())), Failure::OtherKind,
                    marksOfFirstAndEnabledSecond);
}

INSTANTIATE_TEST_SUITE_P(Values, MarkOfAnotherKindTest, testing::Values("0", "1", "\"true\"", "null", "[]", "{}"));

// The item that the host refused has the null handle, the first one of all: it has no marks, but is read like any
// other.
class FaultOfARefusedItemTest : public MenuDescriptionFaultsTest, public testing::WithParamInterface<const char*> {
  protected:
    FaultOfARefusedItemTest() { MenuItemID(nullptr) = "refused"; }
};

TEST_P(FaultOfARefusedItemTest, AbandonsTheUpdateAllTheSame) {
    const std::string members = GetParam();
    const std::string refused = R"({"id":"refused","title":"Refused","child":null)" + members + "}";
    ExpectAbandoned(Behind(refused),
                    members.find(":1") == std::string::npos ? Failure::LacksMember : Failure::OtherKind, {});
}

INSTANTIATE_TEST_SUITE_P(Members, FaultOfARefusedItemTest,
                         testing::Values("", R"(,"checked":true)", R"(,"enabled":true)",
                                         R"(,"enabled":1,"checked":true)", R"(,"enabled":true,"checked":1)"));

class UnpairedSurrogateTest : public MenuDescriptionFaultsTest, public testing::WithParamInterface<const char*> {};

TEST_P(UnpairedSurrogateTest, InATitleThatIsVisitedAbandonsTheUpdateBeforeAnyMark) {
    ExpectAbandoned("[" + ItemJson("b", GetParam()) + "," + ItemJson("a", "Fonts") + "]", Failure::UnpairedSurrogate,
                    {});
}

TEST_P(UnpairedSurrogateTest, InAnIdentifierThatIsVisitedAbandonsTheUpdateAndTheMarksOfTheOthersStay) {
    ExpectAbandoned(Behind(ItemJson(GetParam(), "Stranger") + "," + ItemJson("b", "Sets")), Failure::UnpairedSurrogate,
                    marksOfFirst);
}

TEST_P(UnpairedSurrogateTest, BehindWhatIsLookedForIsNotVisited) {
    Describe(Behind(ItemJson("b", GetParam()) + "," + ItemJson(GetParam(), "Stranger")));
    EXPECT_EQ(FailureOfUpdate(), Failure::None);
    EXPECT_EQ(Marks().size(), 4u);
}

INSTANTIATE_TEST_SUITE_P(Units, UnpairedSurrogateTest,
                         testing::Values("\\ud800", "\\udc00", "Fonts\\ud800", "\\ud800 Fonts"));

}  // namespace
