#include "json/JsonValue.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "doubles/common/AllocationFaults.h"
#include "unit/json/JsonTestText.h"

namespace {

using Kind = JsonValue::Kind;

std::unique_ptr<JsonValue> TwoTexts(std::wstring_view key = {}) {
    std::unique_ptr<JsonValue> array = JsonValue::MakeArray(key);
    array->Append(JsonValue::MakeString(L"first"));
    array->Append(JsonValue::MakeString(L"second"));
    return array;
}

std::vector<std::wstring> KeysOf(const JsonValue& object) {
    std::vector<std::wstring> keys;
    for (const JsonValue& member : object.AsObject()) keys.emplace_back(member.Key());
    return keys;
}

// Which of the six queries say yes, in the order of the kinds.
std::string Queries(const JsonValue& value) {
    std::string answers;
    for (const bool answer :
         {value.IsNull(), value.IsString(), value.IsBool(), value.IsNumber(), value.IsArray(), value.IsObject()}) {
        answers += answer ? '1' : '0';
    }
    return answers;
}

TEST(JsonValueTest, KindsAreNumberedFromNullToObject) {
    EXPECT_EQ(static_cast<int>(Kind::Null), 0);
    EXPECT_EQ(static_cast<int>(Kind::String), 1);
    EXPECT_EQ(static_cast<int>(Kind::Bool), 2);
    EXPECT_EQ(static_cast<int>(Kind::Number), 3);
    EXPECT_EQ(static_cast<int>(Kind::Array), 4);
    EXPECT_EQ(static_cast<int>(Kind::Object), 5);
}

TEST(JsonValueTest, EachIsMadeWithItsKind) {
    EXPECT_EQ(JsonValue::MakeNull()->GetKind(), Kind::Null);
    EXPECT_EQ(JsonValue::MakeString(L"")->GetKind(), Kind::String);
    EXPECT_EQ(JsonValue::MakeBool(false)->GetKind(), Kind::Bool);
    EXPECT_EQ(JsonValue::MakeNumber(0.0)->GetKind(), Kind::Number);
    EXPECT_EQ(JsonValue::MakeArray()->GetKind(), Kind::Array);
    EXPECT_EQ(JsonValue::MakeObject()->GetKind(), Kind::Object);
}

TEST(JsonValueTest, ExactlyOneQueryFitsEachKind) {
    EXPECT_EQ(Queries(*JsonValue::MakeNull()), "100000");
    EXPECT_EQ(Queries(*JsonValue::MakeString(L"")), "010000");
    EXPECT_EQ(Queries(*JsonValue::MakeBool(true)), "001000");
    EXPECT_EQ(Queries(*JsonValue::MakeNumber(1.0)), "000100");
    EXPECT_EQ(Queries(*JsonValue::MakeArray()), "000010");
    EXPECT_EQ(Queries(*JsonValue::MakeObject()), "000001");
}

template <typename Payload>
constexpr bool kMakesABool = requires(Payload payload) {
    JsonValue::MakeBool(payload);
};

TEST(JsonValueTest, OnlyABoolMakesABool) {
    EXPECT_TRUE(kMakesABool<bool>);
    EXPECT_FALSE(kMakesABool<int>);
    EXPECT_FALSE(kMakesABool<const wchar_t*>);
}

TEST(JsonValueTest, AccessorsReturnThePayload) {
    EXPECT_EQ(JsonValue::MakeString(std::wstring(L"a\0b", 3))->AsString(), std::wstring(L"a\0b", 3));
    EXPECT_TRUE(JsonValue::MakeBool(true)->AsBool());
    EXPECT_FALSE(JsonValue::MakeBool(false)->AsBool());
    EXPECT_EQ(JsonValue::MakeNumber(-2.5)->AsNumber(), -2.5);
}

TEST(JsonValueTest, EveryKindKeepsItsKey) {
    EXPECT_EQ(JsonValue::MakeNull(L"key")->Key(), L"key");
    EXPECT_EQ(JsonValue::MakeBool(true, L"key")->Key(), L"key");
    EXPECT_EQ(JsonValue::MakeNumber(1.0, L"key")->Key(), L"key");
    EXPECT_EQ(JsonValue::MakeArray(L"key")->Key(), L"key");
    EXPECT_EQ(JsonValue::MakeObject(L"key")->Key(), L"key");
    EXPECT_EQ(JsonValue::MakeNull()->Key(), L"");
    const std::unique_ptr<JsonValue> text = JsonValue::MakeString(L"the text", std::wstring(L"a\0key", 5));
    EXPECT_EQ(text->Key(), std::wstring(L"a\0key", 5));
    EXPECT_EQ(text->AsString(), L"the text");
}

TEST(JsonValueTest, ArraysKeepTheirOrder) {
    const std::unique_ptr<JsonValue> value = TwoTexts();
    ASSERT_EQ(ChildrenOf(*value).size(), 2u);
    EXPECT_EQ(ChildrenOf(*value)[0]->AsString(), L"first");
    EXPECT_EQ(ChildrenOf(*value)[1]->AsString(), L"second");
}

TEST(JsonValueTest, ContainersHoldTheVeryValuesThatWereAppended) {
    std::unique_ptr<JsonValue> element = JsonValue::MakeNull();
    const JsonValue* const address = element.get();
    const std::unique_ptr<JsonValue> array = JsonValue::MakeArray();
    EXPECT_EQ(&array->Append(std::move(element)), address);
    EXPECT_EQ(array->FirstChild(), address);
    EXPECT_EQ(address->ParentOfLast(), array.get());
    EXPECT_FALSE(address->IsMember());
}

TEST(JsonValueTest, OnlyOfTheLastChildTheParentIsKnown) {
    const std::unique_ptr<JsonValue> array = TwoTexts();
    const JsonValue* const first = array->FirstChild();
    const JsonValue* const second = first->NextSibling();
    EXPECT_EQ(first->ParentOfLast(), nullptr);
    EXPECT_EQ(second->NextSibling(), nullptr);
    EXPECT_EQ(second->ParentOfLast(), array.get());
    EXPECT_EQ(array->NextSibling(), nullptr);
    EXPECT_EQ(array->ParentOfLast(), nullptr);
    EXPECT_EQ(second->FirstChild(), nullptr);
}

TEST(JsonValueTest, MembersAreOrderedByTheCodeUnitsOfTheirKeys) {
    const wchar_t* const keys[] = {L"\xFFFF", L"b", L"\x7FFF", L"", L"a", L"B", L"aa", L"\xD83D\xDE00", L"\x00E9"};
    const std::vector<std::wstring> expected = {
        L"", L"B", L"a", L"aa", L"b", L"\x00E9", L"\x7FFF", L"\xD83D\xDE00", L"\xFFFF"};
    const std::unique_ptr<JsonValue> oneByOne = JsonValue::MakeObject();
    const std::unique_ptr<JsonValue> atOnce = JsonValue::MakeObject();
    for (const wchar_t* key : keys) {
        EXPECT_TRUE(oneByOne->Append(JsonValue::MakeString(key, key)).IsMember());
        atOnce->AppendUnordered(JsonValue::MakeString(key, key));
    }
    atOnce->OrderMembers();
    for (const JsonValue* object : {oneByOne.get(), atOnce.get()}) {
        EXPECT_EQ(KeysOf(*object), expected);
        for (const JsonValue& member : object->AsObject()) EXPECT_EQ(member.Key(), member.AsString());
        EXPECT_EQ(ChildrenOf(*object).back()->ParentOfLast(), object);
    }
}

TEST(JsonValueTest, AMemberTakesThePlaceOfOneWithItsKey) {
    const std::ptrdiff_t before = LiveAllocations();
    std::unique_ptr<JsonValue> object = JsonValue::MakeObject();
    for (const wchar_t* key : {L"b", L"a", L"b", L"c", L"b"}) object->Append(TwoTexts(key));
    object->Append(JsonValue::MakeNull(L"a"));
    EXPECT_EQ(LiveAllocations() - before, 8);
    EXPECT_EQ(KeysOf(*object), (std::vector<std::wstring>{L"a", L"b", L"c"}));
    EXPECT_TRUE(MemberOf(*object, L"a").IsNull());
    object.reset();
    EXPECT_EQ(LiveAllocations(), before);
}

// In an order that is neither theirs nor the reverse; sorting in the square of the time would take minutes.
TEST(JsonValueTest, ManyMembersAreOrdered) {
    constexpr std::size_t kCount = 200'000;
    const std::unique_ptr<JsonValue> object = JsonValue::MakeObject();
    for (std::size_t i = 0; i < kCount; ++i) {
        object->AppendUnordered(JsonValue::MakeNull(std::to_wstring(i * 7919 % kCount)));
    }
    object->OrderMembers();
    const JsonValue* previous = nullptr;
    std::size_t count = 0;
    for (const JsonValue& member : object->AsObject()) {
        ASSERT_TRUE(previous == nullptr || previous->Key() < member.Key());
        previous = &member;
        ++count;
    }
    EXPECT_EQ(count, kCount);
}

TEST(JsonValueTest, AMemberIsFoundByItsWholeKey) {
    const std::unique_ptr<JsonValue> object = Parsed(LR"({"ab":1,"a":2,"":3})");
    EXPECT_EQ(MemberOf(*object, L"a").AsNumber(), 2.0);
    EXPECT_EQ(MemberOf(*object, L"").AsNumber(), 3.0);
    EXPECT_EQ(object->FindMember(L"abc"), nullptr);
    EXPECT_EQ(object->FindMember(L"b"), nullptr);
    EXPECT_EQ(JsonValue::MakeObject()->FindMember(L""), nullptr);
}

TEST(JsonValueTest, AnAccessorOfAnotherKindThrows) {
    const std::unique_ptr<JsonValue> number = JsonValue::MakeNumber(1.0);
    EXPECT_THROW(number->AsString(), std::bad_variant_access);
    EXPECT_THROW(number->AsBool(), std::bad_variant_access);
    EXPECT_THROW(number->AsArray(), std::bad_variant_access);
    EXPECT_THROW(number->AsObject(), std::bad_variant_access);
    EXPECT_THROW(number->FindMember(L"a"), std::bad_variant_access);
    EXPECT_THROW(number->Append(JsonValue::MakeNull()), std::bad_variant_access);
    EXPECT_THROW(JsonValue::MakeBool(true)->AsNumber(), std::bad_variant_access);
    EXPECT_THROW(JsonValue::MakeArray()->AsObject(), std::bad_variant_access);
    EXPECT_THROW(JsonValue::MakeObject()->AsArray(), std::bad_variant_access);
}

TEST(JsonValueTest, CannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<JsonValue>);
    EXPECT_FALSE(std::is_copy_assignable_v<JsonValue>);
}

TEST(JsonValueTest, EveryValueIsOneBlockAndDeletesItsDescendants) {
    const std::ptrdiff_t before = LiveAllocations();
    const std::size_t made = AllocationsMade();
    {
        const std::unique_ptr<JsonValue> value = TwoTexts();
        JsonValue& inner = value->Append(JsonValue::MakeObject());
        inner.Append(TwoTexts(L"a key too long to lie inside a string itself"));
        inner.Append(JsonValue::MakeString(L"a text too long to lie inside a string itself", L"leaf"));
        EXPECT_EQ(LiveAllocations() - before, 8);
    }
    EXPECT_EQ(LiveAllocations(), before);
    EXPECT_EQ(AllocationsMade() - made, 8u);
}

TEST(JsonValueTest, DeletionAllocatesNothing) {
    std::unique_ptr<JsonValue> value = TwoTexts();
    value->Append(TwoTexts());

    const std::size_t before = AllocationsMade();
    const std::ptrdiff_t liveBefore = LiveAllocations();
    value.reset();
    EXPECT_EQ(AllocationsMade(), before);
    EXPECT_EQ(liveBefore - LiveAllocations(), 6);
}

}  // namespace
