#include "menus/MenuObject.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "json/JsonParser.h"
#include "json/JsonWriter.h"
#include "support/log/RecordingLogSink.h"
#include "support/ResultCodes.h"

namespace {

// An item with a mark by which it is recognised; `child` is JSON text.
std::wstring Item(const std::wstring& id, const std::wstring& mark, const std::wstring& child = L"null") {
    return L"{\"id\":\"" + id + L"\",\"title\":\"title of " + id + L"\",\"child\":" + child + L",\"mark\":\"" + mark +
           L"\"}";
}

class MenuObjectTest : public testing::Test {
  protected:
    std::int32_t Search(const std::wstring& json, const std::string& value, std::wstring_view key = L"id") {
        root = ParseJson(json);
        ClearRecordedLog();
        return MenuObjects(root.get(), key).GetMenuObject(value, &found);
    }
    std::wstring FoundMark() const { return std::wstring(MenuObjectMember(*found, L"mark").AsString()); }

    // The text of the exception that leaves the search.
    std::string Thrown(const std::wstring& json, const std::string& value, std::wstring_view key = L"id") {
        try {
            Search(json, value, key);
        } catch (const std::out_of_range& exception) {
            return exception.what();
        }
        return "nothing";
    }

    static std::vector<RecordedLine> Framed(const std::string& value, std::int32_t result,
                                            const std::vector<std::string>& inner = {}) {
        std::vector<RecordedLine> lines = {{1, "Entering GetMenuObject(..., " + value + ", ...)"}};
        for (const std::string& line : inner) {
            lines.push_back({0, line});
        }
        lines.push_back({-1, "Exiting GetMenuObject(..., " + value + ", ...) with result " + std::to_string(result)});
        return lines;
    }

    std::unique_ptr<JsonValue> root;
    const std::unique_ptr<JsonValue> untouched = JsonValue::MakeNull();
    const JsonValue* found = untouched.get();
};

// --- roots ----------------------------------------------------------------------------------------------------------

TEST_F(MenuObjectTest, RootThatIsTheItemIsFound) {
    EXPECT_EQ(Search(Item(L"a", L"the root"), "a"), 0);
    EXPECT_EQ(found, root.get());
    EXPECT_EQ(RecordedLog(), Framed("a", 0));
}

TEST_F(MenuObjectTest, ItemOfARootArrayIsFound) {
    EXPECT_EQ(Search(L"[" + Item(L"a", L"1") + L"," + Item(L"b", L"2") + L"]", "b"), 0);
    EXPECT_EQ(FoundMark(), L"2");
    EXPECT_EQ(RecordedLog(), Framed("b", 0));
}

TEST_F(MenuObjectTest, TextThatDoesNotParseHoldsNothing) {
    EXPECT_EQ(Search(L"{\"id\":", "a"), 0x15000000);
    EXPECT_EQ(found, untouched.get());
    EXPECT_EQ(RecordedLog(), Framed("a", 0x15000000));
}

TEST_F(MenuObjectTest, EmptyArrayHoldsNothing) {
    EXPECT_EQ(Search(L"[]", "a"), 0x15000000);
    EXPECT_EQ(RecordedLog(), Framed("a", 0x15000000));
}

TEST_F(MenuObjectTest, ElementsThatAreNoObjectsArePassedOver) {
    EXPECT_EQ(Search(L"[1,\"a\",null,true,[" + Item(L"a", L"too deep") + L"]]", "a"), 0x15000000);
    EXPECT_EQ(Search(L"[1,\"a\",null,true,[]," + Item(L"a", L"last") + L"]", "a"), 0);
    EXPECT_EQ(FoundMark(), L"last");
}

class MenuObjectRootTest : public MenuObjectTest, public testing::WithParamInterface<const wchar_t*> {};

TEST_P(MenuObjectRootTest, OfAnotherKindIsRefused) {
    EXPECT_EQ(Search(GetParam(), "a"), 0x4000000);
    EXPECT_EQ(found, untouched.get());
    EXPECT_EQ(RecordedLog(), Framed("a", 0x4000000, {"The root element is not an object."}));
}

INSTANTIATE_TEST_SUITE_P(Kinds, MenuObjectRootTest, testing::Values(L"17", L"\"a\"", L"true", L"null"));

// --- the order of the search ----------------------------------------------------------------------------------------

TEST_F(MenuObjectTest, ChildrenAreSearched) {
    const std::wstring inner = Item(L"c", L"third level");
    EXPECT_EQ(Search(Item(L"a", L"1", L"[" + Item(L"b", L"2", L"[" + inner + L"]") + L"]"), "c"), 0);
    EXPECT_EQ(FoundMark(), L"third level");
}

TEST_F(MenuObjectTest, ItemWinsOverItsChildren) {
    EXPECT_EQ(Search(Item(L"a", L"outer", L"[" + Item(L"a", L"inner") + L"]"), "a"), 0);
    EXPECT_EQ(FoundMark(), L"outer");
}

TEST_F(MenuObjectTest, DeepMatchInTheFirstElementWinsOverALaterElement) {
    const std::wstring deep = Item(L"x", L"1", L"[" + Item(L"y", L"2", L"[" + Item(L"a", L"deep") + L"]") + L"]");
    EXPECT_EQ(Search(L"[" + deep + L"," + Item(L"a", L"later") + L"]", "a"), 0);
    EXPECT_EQ(FoundMark(), L"deep");
}

TEST_F(MenuObjectTest, FirstOfEqualElementsWins) {
    EXPECT_EQ(Search(L"[" + Item(L"a", L"first") + L"," + Item(L"a", L"second") + L"]", "a"), 0);
    EXPECT_EQ(FoundMark(), L"first");
}

TEST_F(MenuObjectTest, SearchGoesOnBehindASubtreeWithoutAMatch) {
    EXPECT_EQ(
        Search(L"[" + Item(L"x", L"1", L"[" + Item(L"y", L"2") + L"]") + L"," + Item(L"a", L"behind") + L"]", "a"), 0);
    EXPECT_EQ(FoundMark(), L"behind");
}

TEST_F(MenuObjectTest, MatchEndsTheSearchBeforeAnIncompleteItem) {
    EXPECT_EQ(Search(L"[" + Item(L"a", L"found") + L",{}]", "a"), 0);
    EXPECT_EQ(FoundMark(), L"found");
}

class MenuObjectLeafTest : public MenuObjectTest, public testing::WithParamInterface<const wchar_t*> {};

TEST_P(MenuObjectLeafTest, HasNothingToSearchAndIsFoundItself) {
    EXPECT_EQ(Search(Item(L"a", L"leaf", GetParam()), "b"), 0x15000000);
    EXPECT_EQ(Search(Item(L"a", L"leaf", GetParam()), "a"), 0);
    EXPECT_EQ(FoundMark(), L"leaf");
}

INSTANTIATE_TEST_SUITE_P(Children, MenuObjectLeafTest,
                         testing::Values(L"null", L"[]", L"false", L"7", L"\"b\"",
                                         L"{\"id\":\"b\",\"title\":\"b\",\"child\":null}"));

TEST_F(MenuObjectTest, VeryDeepDescriptionIsSearchedToItsEnd) {
    std::wstring json = Item(L"a", L"deepest");
    std::wstring before;
    std::wstring after;
    for (int level = 0; level < 50000; ++level) {
        before += L"{\"id\":\"x\",\"child\":[";
        after += L"]}";
    }
    EXPECT_EQ(Search(before + json + after, "a"), 0);
    EXPECT_EQ(FoundMark(), L"deepest");
}

// --- what is compared -----------------------------------------------------------------------------------------------

TEST_F(MenuObjectTest, KeyDecidesWhichMemberIsCompared) {
    const std::wstring json = L"[" + Item(L"title of b", L"1") + L"," + Item(L"b", L"2") + L"]";
    EXPECT_EQ(Search(json, "title of b", L"title"), 0);
    EXPECT_EQ(FoundMark(), L"2");
    EXPECT_EQ(Search(json, "title of b", L"id"), 0);
    EXPECT_EQ(FoundMark(), L"1");
}

TEST_F(MenuObjectTest, ValueIsComparedExactlyAsUtf8) {
    const std::wstring json = Item(L"Gr\u00F6\u00DFe \u6587 \xD83D\xDE00", L"beyond ASCII");
    EXPECT_EQ(Search(json,
                     "Gr\xC3\xB6\xC3\x9F"
                     "e \xE6\x96\x87 \xF0\x9F\x98\x80"),
              0);
    EXPECT_EQ(Search(json,
                     "gr\xC3\xB6\xC3\x9F"
                     "e \xE6\x96\x87 \xF0\x9F\x98\x80"),
              0x15000000);
}

TEST_F(MenuObjectTest, PartOfATextIsNoMatch) {
    EXPECT_EQ(Search(Item(L"abc", L"1"), "ab"), 0x15000000);
    EXPECT_EQ(Search(Item(L"ab", L"1"), "abc"), 0x15000000);
    EXPECT_EQ(Search(Item(L"ab", L"1"), ""), 0x15000000);
}

TEST_F(MenuObjectTest, EmptyTextIsFoundByAnEmptyValue) { EXPECT_EQ(Search(Item(L"", L"1"), ""), 0); }

TEST_F(MenuObjectTest, ItemWhoseMemberIsNoStringIsPassedOverWithItsChildren) {
    EXPECT_EQ(Search(LR"({"id":7,"child":[{"id":"a","child":null}]})", "a"), 0x15000000);
    EXPECT_EQ(Search(LR"([{"id":7,"child":[{"id":"a","child":null}]},{"id":"a","child":null,"mark":"next"}])", "a"), 0);
    EXPECT_EQ(FoundMark(), L"next");
}

// --- incomplete descriptions ----------------------------------------------------------------------------------------

TEST_F(MenuObjectTest, ItemWithoutTheKeyAbandonsTheSearch) {
    EXPECT_EQ(Thrown(LR"({"title":"a","child":null})", "a"), "invalid map<K, T> key");
    EXPECT_EQ(found, untouched.get());
    EXPECT_EQ(Thrown(L"[{\"child\":null}," + Item(L"a", L"later") + L"]", "a"), "invalid map<K, T> key");
}

TEST_F(MenuObjectTest, ItemWithoutChildAbandonsTheSearchEvenWhenItIsTheOneSought) {
    EXPECT_EQ(Thrown(LR"({"id":"a"})", "a"), "invalid map<K, T> key");
    EXPECT_EQ(found, untouched.get());
}

TEST_F(MenuObjectTest, ItemWithoutChildAbandonsTheSearchEvenWhenItsMemberIsNoString) {
    EXPECT_EQ(Thrown(LR"({"id":7})", "a"), "invalid map<K, T> key");
}

TEST_F(MenuObjectTest, IncompleteItemBelowAbandonsTheWholeSearch) {
    EXPECT_EQ(Thrown(L"[" + Item(L"x", L"1", L"[{\"id\":\"y\"}]") + L"," + Item(L"a", L"later") + L"]", "a"),
              "invalid map<K, T> key");
}

TEST_F(MenuObjectTest, AbandonedSearchLogsItsEntryAlone) {
    Thrown(L"{}", "a");
    EXPECT_EQ(RecordedLog(), (std::vector<RecordedLine>{{1, "Entering GetMenuObject(..., a, ...)"}}));
}

TEST_F(MenuObjectTest, MemberOfAnItemIsItsValueAndAMissingOneIsThrown) {
    root = ParseJson(LR"({"enabled":true})");
    EXPECT_TRUE(MenuObjectMember(*root, L"enabled").AsBool());
    try {
        MenuObjectMember(*root, L"checked");
        FAIL();
    } catch (const std::out_of_range& exception) {
        EXPECT_STREQ(exception.what(), "invalid map<K, T> key");
    }
}

}  // namespace
