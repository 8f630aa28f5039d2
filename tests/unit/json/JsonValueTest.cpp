#include "json/JsonValue.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>
#include <type_traits>
#include <variant>

#include "doubles/common/AllocationFaults.h"

namespace {

using Kind = JsonValue::Kind;

std::unique_ptr<JsonValue> Text(const wchar_t* text) { return std::make_unique<JsonValue>(std::wstring(text)); }

JsonValue::Array TwoTexts() {
    JsonValue::Array elements;
    elements.push_back(Text(L"first"));
    elements.push_back(Text(L"second"));
    return elements;
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

TEST(JsonValueTest, EachConstructorFixesTheKind) {
    EXPECT_EQ(JsonValue().GetKind(), Kind::Null);
    EXPECT_EQ(JsonValue(std::wstring()).GetKind(), Kind::String);
    EXPECT_EQ(JsonValue(false).GetKind(), Kind::Bool);
    EXPECT_EQ(JsonValue(0.0).GetKind(), Kind::Number);
    EXPECT_EQ(JsonValue(JsonValue::Array()).GetKind(), Kind::Array);
    EXPECT_EQ(JsonValue(JsonValue::Object()).GetKind(), Kind::Object);
}

TEST(JsonValueTest, ExactlyOneQueryFitsEachKind) {
    EXPECT_EQ(Queries(JsonValue()), "100000");
    EXPECT_EQ(Queries(JsonValue(std::wstring())), "010000");
    EXPECT_EQ(Queries(JsonValue(true)), "001000");
    EXPECT_EQ(Queries(JsonValue(1.0)), "000100");
    EXPECT_EQ(Queries(JsonValue(JsonValue::Array())), "000010");
    EXPECT_EQ(Queries(JsonValue(JsonValue::Object())), "000001");
}

TEST(JsonValueTest, AStringLiteralMakesAStringAndNotABool) {
    const JsonValue value(L"true");
    ASSERT_EQ(value.GetKind(), Kind::String);
    EXPECT_EQ(value.AsString(), L"true");
}

TEST(JsonValueTest, AWholeNumberMakesANumberAndNotABool) {
    const JsonValue value(1);
    ASSERT_EQ(value.GetKind(), Kind::Number);
    EXPECT_EQ(value.AsNumber(), 1.0);
}

TEST(JsonValueTest, AccessorsReturnThePayload) {
    EXPECT_EQ(JsonValue(std::wstring(L"a\0b", 3)).AsString(), std::wstring(L"a\0b", 3));
    EXPECT_TRUE(JsonValue(true).AsBool());
    EXPECT_FALSE(JsonValue(false).AsBool());
    EXPECT_EQ(JsonValue(-2.5).AsNumber(), -2.5);
}

TEST(JsonValueTest, ArraysKeepTheirOrder) {
    const JsonValue value(TwoTexts());
    ASSERT_EQ(value.AsArray().size(), 2u);
    EXPECT_EQ(value.AsArray()[0]->AsString(), L"first");
    EXPECT_EQ(value.AsArray()[1]->AsString(), L"second");
}

TEST(JsonValueTest, ContainerAccessorsReferToTheContainedValues) {
    JsonValue::Array elements = TwoTexts();
    const JsonValue* const first = elements[0].get();
    const JsonValue value(std::move(elements));
    EXPECT_EQ(value.AsArray()[0].get(), first);
    EXPECT_EQ(&value.AsArray(), &value.AsArray());
}

TEST(JsonValueTest, MembersAreOrderedByTheCodeUnitsOfTheirKeys) {
    const wchar_t* const keys[] = {L"\xFFFF", L"b", L"\x7FFF", L"", L"a", L"B", L"aa", L"\xD83D\xDE00", L"\x00E9"};
    JsonValue::Object members;
    for (const wchar_t* key : keys) members.emplace(key, Text(key));
    const JsonValue value(std::move(members));

    std::vector<std::wstring> ordered;
    for (const auto& [key, member] : value.AsObject()) {
        EXPECT_EQ(key, member->AsString());
        ordered.push_back(key);
    }
    const std::vector<std::wstring> expected = {
        L"", L"B", L"a", L"aa", L"b", L"\x00E9", L"\x7FFF", L"\xD83D\xDE00", L"\xFFFF"};
    EXPECT_EQ(ordered, expected);
}

TEST(JsonValueTest, AnAccessorOfAnotherKindThrows) {
    const JsonValue number(1.0);
    EXPECT_THROW(number.AsString(), std::bad_variant_access);
    EXPECT_THROW(number.AsBool(), std::bad_variant_access);
    EXPECT_THROW(number.AsArray(), std::bad_variant_access);
    EXPECT_THROW(number.AsObject(), std::bad_variant_access);
    EXPECT_THROW(JsonValue(true).AsNumber(), std::bad_variant_access);
}

TEST(JsonValueTest, CannotBeCopied) {
    EXPECT_FALSE(std::is_copy_constructible_v<JsonValue>);
    EXPECT_FALSE(std::is_copy_assignable_v<JsonValue>);
}

TEST(JsonValueTest, DeletesEveryDescendant) {
    const std::ptrdiff_t before = LiveAllocations();
    {
        JsonValue::Object inner;
        inner.emplace(L"a key too long to lie inside the string itself", std::make_unique<JsonValue>(TwoTexts()));
        inner.emplace(L"leaf", std::make_unique<JsonValue>());
        JsonValue::Array elements = TwoTexts();
        elements.push_back(std::make_unique<JsonValue>(std::move(inner)));
        const JsonValue value(std::move(elements));
        // Seven values, two map nodes, the long key and the storage of two arrays.
        EXPECT_GE(LiveAllocations() - before, 12);
    }
    EXPECT_EQ(LiveAllocations(), before);
}

TEST(JsonValueTest, DeletionAllocatesNothing) {
    JsonValue::Array elements = TwoTexts();
    elements.push_back(std::make_unique<JsonValue>(TwoTexts()));
    auto value = std::make_unique<JsonValue>(std::move(elements));

    const std::size_t before = AllocationsMade();
    const std::ptrdiff_t liveBefore = LiveAllocations();
    value.reset();
    EXPECT_EQ(AllocationsMade(), before);
    EXPECT_EQ(liveBefore - LiveAllocations(), 8);  // six values, the storage of two arrays
}

}  // namespace
