#include "json/JsonParser.h"

#include <gtest/gtest.h>

#include "doubles/common/AllocationFaults.h"
#include "unit/json/JsonTestText.h"

namespace {

using namespace std::string_view_literals;

TEST(JsonParserTest, AnEmptyObjectBetweenBlanksParses) {
    const std::unique_ptr<JsonValue> value = Parsed(L"  {}  ");
    ASSERT_TRUE(value->IsObject());
    EXPECT_EQ(ChildrenOf(*value).size(), 0u);
}

TEST(JsonParserTest, TrailingTextIsAnError) {
    EXPECT_TRUE(IsRefused(L"{} x"));
    EXPECT_TRUE(IsRefused(L"1 2"));
    EXPECT_TRUE(IsRefused(L"[]]"));
    EXPECT_TRUE(IsRefused(L"\"a\"\"b\""));
    EXPECT_TRUE(IsRefused(L"null,"));
}

TEST(JsonParserTest, TrailingTextFreesTheValueBeforeIt) {
    const std::ptrdiff_t before = LiveAllocations();
    const bool refused = IsRefused(L"[\"a text too long to lie inside the string itself\", {\"a\": [1]}] x");
    EXPECT_EQ(LiveAllocations(), before);
    EXPECT_TRUE(refused);
}

TEST(JsonParserTest, ATextWithoutAValueIsAnError) {
    EXPECT_TRUE(IsRefused(L""));
    EXPECT_TRUE(IsRefused(std::wstring_view()));
    EXPECT_TRUE(IsRefused(L" "));
    EXPECT_TRUE(IsRefused(L" \t\r\n "));
}

TEST(JsonParserTest, FourCharactersAreWhitespace) {
    EXPECT_EQ(Rewritten(L" \t\n\r[ \t\n\r1 \t\n\r, \t\n\r2 \t\n\r] \t\n\r"), L"[1,2]");
    EXPECT_EQ(Rewritten(L" \t\n\r{ \t\n\r\"a\" \t\n\r: \t\n\r1 \t\n\r, \t\n\r\"b\" \t\n\r: \t\n\r2 \t\n\r} \t\n\r"),
              L"{\"a\":1,\"b\":2}");
    EXPECT_EQ(Rewritten(L"[ \t\n\r]"), L"[]");
    EXPECT_EQ(Rewritten(L"{ \t\n\r}"), L"{}");
}

TEST(JsonParserTest, NothingElseIsWhitespace) {
    // Every other unit, in front of a value, behind it and between brackets; a digit or a minus would be part of it.
    for (unsigned code = 0; code <= 0xFFFF; ++code) {
        const auto unit = static_cast<wchar_t>(code);
        const bool isWhitespace = std::wstring_view(L" \t\n\r").find(unit) != std::wstring_view::npos;
        if (unit == L'-' || (unit >= L'1' && unit <= L'9')) continue;
        ASSERT_EQ(IsRefused(std::wstring{unit, L'1'}), !isWhitespace) << code;
        ASSERT_EQ(IsRefused(std::wstring{L'[', unit, L']'}), !isWhitespace && unit != L'0') << code;
        ASSERT_EQ(IsRefused(std::wstring{L'[', L']', unit}), !isWhitespace) << code;
    }
}

TEST(JsonParserTest, ANulOutsideAStringIsAnError) {
    EXPECT_TRUE(IsRefused(L"\0"sv));
    EXPECT_TRUE(IsRefused(L"{}\0"sv));
    EXPECT_TRUE(IsRefused(L"[1\0]"sv));
    EXPECT_TRUE(
        IsRefused(L"\0"
                  L"1"sv));
}

TEST(JsonParserTest, OnlyTheTextThatIsHandedInIsRead) {
    EXPECT_EQ(ParsedNumber(std::wstring_view(L"12345", 2)), 12.0);
    EXPECT_TRUE(IsRefused(std::wstring_view(L"true", 3)));
    EXPECT_TRUE(IsRefused(std::wstring_view(L"\"\\u0041\"", 6)));
}

TEST(JsonParserTest, EachKindParses) {
    EXPECT_TRUE(Parsed(L"null")->IsNull());
    EXPECT_EQ(ParsedString(L"\"text\""), L"text");
    EXPECT_TRUE(Parsed(L"true")->AsBool());
    EXPECT_EQ(ParsedNumber(L"-17.25"), -17.25);
    EXPECT_EQ(ChildrenOf(*Parsed(L"[]")).size(), 0u);
    EXPECT_EQ(ChildrenOf(*Parsed(L"{}")).size(), 0u);
}

TEST(JsonParserTest, ArrayElementsKeepTheirOrderAndKind) {
    const std::unique_ptr<JsonValue> value = Parsed(L"[3, \"two\", true, null, [1], {\"k\": 0}]");
    const std::vector<const JsonValue*> elements = ChildrenOf(*value);
    ASSERT_EQ(elements.size(), 6u);
    EXPECT_EQ(elements[0]->AsNumber(), 3.0);
    EXPECT_EQ(elements[1]->AsString(), L"two");
    EXPECT_TRUE(elements[2]->AsBool());
    EXPECT_TRUE(elements[3]->IsNull());
    EXPECT_EQ(ChildrenOf(*elements[4]).at(0)->AsNumber(), 1.0);
    EXPECT_EQ(MemberOf(*elements[5], L"k").AsNumber(), 0.0);
}

TEST(JsonParserTest, AnArrayNeedsAValueAfterEachComma) {
    EXPECT_TRUE(IsRefused(L"[1,2,]"));
    EXPECT_TRUE(IsRefused(L"[,]"));
    EXPECT_TRUE(IsRefused(L"[,1]"));
    EXPECT_TRUE(IsRefused(L"[1,,2]"));
}

TEST(JsonParserTest, AnArrayNeedsACommaBetweenValues) {
    EXPECT_TRUE(IsRefused(L"[1 2]"));
    EXPECT_TRUE(IsRefused(L"[[][]]"));
    EXPECT_TRUE(IsRefused(L"[1:2]"));
    EXPECT_TRUE(IsRefused(L"[1;2]"));
}

TEST(JsonParserTest, AnArrayNeedsItsClosingBracket) {
    EXPECT_TRUE(IsRefused(L"["));
    EXPECT_TRUE(IsRefused(L"[1"));
    EXPECT_TRUE(IsRefused(L"[1,"));
    EXPECT_TRUE(IsRefused(L"[1}"));
    EXPECT_TRUE(IsRefused(L"[}"));
    EXPECT_TRUE(IsRefused(L"[[1]"));
}

TEST(JsonParserTest, AnObjectNeedsAStringForAKey) {
    EXPECT_TRUE(IsRefused(L"{a:1}"));
    EXPECT_TRUE(IsRefused(L"{1:1}"));
    EXPECT_TRUE(IsRefused(L"{null:1}"));
    EXPECT_TRUE(IsRefused(L"{[]:1}"));
    EXPECT_TRUE(IsRefused(L"{'a':1}"));
    EXPECT_TRUE(IsRefused(L"{:1}"));
    EXPECT_TRUE(IsRefused(L"{\"\\x\":1}"));
}

TEST(JsonParserTest, AnObjectNeedsAColonAndAValueAfterEachKey) {
    EXPECT_TRUE(IsRefused(L"{\"a\"}"));
    EXPECT_TRUE(IsRefused(L"{\"a\" 1}"));
    EXPECT_TRUE(IsRefused(L"{\"a\",1}"));
    EXPECT_TRUE(IsRefused(L"{\"a\":}"));
    EXPECT_TRUE(IsRefused(L"{\"a\"::1}"));
    EXPECT_TRUE(IsRefused(L"{\"a\":,}"));
}

TEST(JsonParserTest, AnObjectNeedsAMemberAfterEachComma) {
    EXPECT_TRUE(IsRefused(L"{\"a\":1,}"));
    EXPECT_TRUE(IsRefused(L"{,}"));
    EXPECT_TRUE(IsRefused(L"{,\"a\":1}"));
    EXPECT_TRUE(IsRefused(L"{\"a\":1,,\"b\":2}"));
    EXPECT_TRUE(IsRefused(L"{\"a\":1 \"b\":2}"));
}

TEST(JsonParserTest, AnObjectNeedsItsClosingBrace) {
    EXPECT_TRUE(IsRefused(L"{"));
    EXPECT_TRUE(IsRefused(L"{\"a\""));
    EXPECT_TRUE(IsRefused(L"{\"a\":"));
    EXPECT_TRUE(IsRefused(L"{\"a\":1"));
    EXPECT_TRUE(IsRefused(L"{\"a\":1]"));
    EXPECT_TRUE(IsRefused(L"{]"));
}

TEST(JsonParserTest, MembersAreFoundByTheirKeys) {
    const std::unique_ptr<JsonValue> value = Parsed(LR"({"b": 1, "a\u00e9": {"": 2}, "A": null})");
    ASSERT_EQ(ChildrenOf(*value).size(), 3u);
    EXPECT_EQ(MemberOf(*value, L"b").AsNumber(), 1.0);
    EXPECT_EQ(MemberOf(MemberOf(*value, L"a\x00E9"), L"").AsNumber(), 2.0);
    EXPECT_TRUE(MemberOf(*value, L"A").IsNull());
    EXPECT_EQ(value->FindMember(L"a"), nullptr);
}

TEST(JsonParserTest, AnObjectInsideAnObjectDoesNotDisturbTheOuterKey) {
    EXPECT_EQ(Rewritten(L"{\"z\":{\"a\":1,\"b\":{\"c\":2}},\"y\":3}"), L"{\"y\":3,\"z\":{\"a\":1,\"b\":{\"c\":2}}}");
}

TEST(JsonParserTest, ElementsAndTheOutermostValueHaveNoKey) {
    const auto object = Parsed(LR"({"a":[1,{"b":2},3]})");
    EXPECT_EQ(object->Key(), L"");
    for (const JsonValue* element : ChildrenOf(MemberOf(*object, L"a"))) {
        EXPECT_EQ(element->Key(), L"");
    }
}

TEST(JsonParserTest, OfEqualKeysTheLastOneWins) {
    EXPECT_EQ(Rewritten(L"{\"a\":1,\"b\":2,\"a\":[3]}"), L"{\"a\":[3],\"b\":2}");
    EXPECT_EQ(Rewritten(LR"({"a":1,"\u0061":2})"), L"{\"a\":2}");
    EXPECT_EQ(Rewritten(L"{\"a\":1,\"a\":2,\"a\":3}"), L"{\"a\":3}");
    EXPECT_EQ(Rewritten(L"{\"b\":1,\"a\":2,\"c\":3,\"a\":4,\"b\":5}"), L"{\"a\":4,\"b\":5,\"c\":3}");
}

TEST(JsonParserTest, OfEqualKeysTheOthersAreFreed) {
    const std::ptrdiff_t before = LiveAllocations();
    std::unique_ptr<JsonValue> single = Parsed(L"{\"a\":[3]}");
    const std::ptrdiff_t held = LiveAllocations() - before;
    single.reset();
    std::unique_ptr<JsonValue> repeated = Parsed(L"{\"a\":{\"b\":[1,2]},\"a\":\"text\",\"a\":[3]}");
    const std::ptrdiff_t heldWithRepeats = LiveAllocations() - before;
    repeated.reset();
    EXPECT_EQ(heldWithRepeats, held);
    EXPECT_EQ(LiveAllocations(), before);
}

}  // namespace
