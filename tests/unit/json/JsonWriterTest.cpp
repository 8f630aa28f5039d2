#include "json/JsonWriter.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <limits>

#include "unit/json/JsonTestText.h"
#include "unit/json/ScopedLocale.h"

namespace {

std::wstring Written(double number) { return WriteJson(JsonValue::MakeNumber(number).get()); }

std::wstring Written(std::wstring_view text) { return WriteJson(JsonValue::MakeString(text).get()); }

TEST(JsonWriterTest, ANullPointerGivesTheEmptyText) { EXPECT_EQ(WriteJson(nullptr), L""); }

TEST(JsonWriterTest, KeywordsAreInLowerCase) {
    EXPECT_EQ(WriteJson(JsonValue::MakeNull().get()), L"null");
    EXPECT_EQ(WriteJson(JsonValue::MakeBool(true).get()), L"true");
    EXPECT_EQ(WriteJson(JsonValue::MakeBool(false).get()), L"false");
}

TEST(JsonWriterTest, WholeNumbersHaveNoPoint) {
    EXPECT_EQ(Written(0.0), L"0");
    EXPECT_EQ(Written(1.0), L"1");
    EXPECT_EQ(Written(-17.0), L"-17");
    EXPECT_EQ(Written(100.0), L"100");
    EXPECT_EQ(Written(2147483648.0), L"2147483648");
}

TEST(JsonWriterTest, FractionsHaveNoTrailingZeros) {
    EXPECT_EQ(Written(0.5), L"0.5");
    EXPECT_EQ(Written(-2.25), L"-2.25");
    EXPECT_EQ(Written(0.1), L"0.1");
}

TEST(JsonWriterTest, FifteenDigitsAreSignificant) {
    EXPECT_EQ(Written(0.1 + 0.2), L"0.3");
    EXPECT_EQ(Written(1.0 / 3.0), L"0.333333333333333");
    EXPECT_EQ(Written(2.0 / 3.0), L"0.666666666666667");
    EXPECT_EQ(Written(3.14159265358979323846), L"3.14159265358979");
    EXPECT_EQ(Written(123456789012345.0), L"123456789012345");
    EXPECT_EQ(Written(9007199254740993.0), L"9.00719925474099e+15");
}

TEST(JsonWriterTest, LargeAndSmallMagnitudesHaveAnExponent) {
    EXPECT_EQ(Written(999999999999999.0), L"999999999999999");
    EXPECT_EQ(Written(1e15), L"1e+15");
    EXPECT_EQ(Written(1e20), L"1e+20");
    EXPECT_EQ(Written(-1.5e100), L"-1.5e+100");
    EXPECT_EQ(Written(0.0001), L"0.0001");
    EXPECT_EQ(Written(0.00001), L"1e-05");
    EXPECT_EQ(Written(std::numeric_limits<double>::max()), L"1.79769313486232e+308");
    EXPECT_EQ(Written(std::numeric_limits<double>::lowest()), L"-1.79769313486232e+308");
    EXPECT_EQ(Written(std::numeric_limits<double>::denorm_min()), L"4.94065645841247e-324");
    EXPECT_EQ(Written(-0.000123456789012345), L"-0.000123456789012345");
}

TEST(JsonWriterTest, MinusZeroKeepsItsSign) { EXPECT_EQ(Written(-0.0), L"-0"); }

TEST(JsonWriterTest, NumbersThatAreNotFiniteAreNull) {
    EXPECT_EQ(Written(std::numeric_limits<double>::quiet_NaN()), L"null");
    EXPECT_EQ(Written(-std::numeric_limits<double>::quiet_NaN()), L"null");
    EXPECT_EQ(Written(std::numeric_limits<double>::infinity()), L"null");
    EXPECT_EQ(Written(-std::numeric_limits<double>::infinity()), L"null");
}

TEST(JsonWriterTest, ALocaleWithADecimalCommaChangesNothing) {
    const ScopedLocale german("German_Germany.1252");
    char inLocale[8];
    std::snprintf(inLocale, sizeof(inLocale), "%.1f", 0.5);
    ASSERT_STREQ(inLocale, "0,5");
    EXPECT_EQ(Written(0.5), L"0.5");
    EXPECT_EQ(Written(1234567.0), L"1234567");
}

TEST(JsonWriterTest, QuoteSlashAndBackslashAreEscaped) {
    EXPECT_EQ(Written(L"\""), LR"("\"")");
    EXPECT_EQ(Written(L"/"), LR"("\/")");
    EXPECT_EQ(Written(L"\\"), LR"("\\")");
    EXPECT_EQ(Written(L"C:\\a/b \"c\""), LR"("C:\\a\/b \"c\"")");
}

TEST(JsonWriterTest, EveryUnitBelow32IsEscaped) {
    const wchar_t* const escapes[32] = {
        L"\\u0000", L"\\u0001", L"\\u0002", L"\\u0003", L"\\u0004", L"\\u0005", L"\\u0006", L"\\u0007",
        L"\\b",     L"\\t",     L"\\n",     L"\\u000B", L"\\f",     L"\\r",     L"\\u000E", L"\\u000F",
        L"\\u0010", L"\\u0011", L"\\u0012", L"\\u0013", L"\\u0014", L"\\u0015", L"\\u0016", L"\\u0017",
        L"\\u0018", L"\\u0019", L"\\u001A", L"\\u001B", L"\\u001C", L"\\u001D", L"\\u001E", L"\\u001F"};
    for (unsigned code = 0; code < 32; ++code) {
        EXPECT_EQ(Written(std::wstring(1, static_cast<wchar_t>(code))), L"\"" + std::wstring(escapes[code]) + L"\"");
    }
}

TEST(JsonWriterTest, EveryOtherUnitIsWrittenAsItIs) {
    for (unsigned code = 32; code <= 0xFFFF; ++code) {
        const auto unit = static_cast<wchar_t>(code);
        if (unit == L'"' || unit == L'/' || unit == L'\\') continue;
        ASSERT_EQ(Written(std::wstring(1, unit)), (std::wstring{L'"', unit, L'"'})) << code;
    }
}

TEST(JsonWriterTest, AnEscapedLetterIsWrittenAsTheLetter) {
    const std::unique_ptr<JsonValue> value = Parsed(LR"("\u00e9")");
    EXPECT_EQ(value->AsString(), (std::wstring{0xE9}));
    EXPECT_EQ(WriteJson(value.get()), (std::wstring{L'"', 0xE9, L'"'}));
}

TEST(JsonWriterTest, AnEmptyStringIsTwoQuotes) { EXPECT_EQ(Written(L""), L"\"\""); }

TEST(JsonWriterTest, ElementsAreSeparatedByCommasOnly) {
    EXPECT_EQ(Rewritten(L"[ ]"), L"[]");
    EXPECT_EQ(Rewritten(L"[ 1 ]"), L"[1]");
    EXPECT_EQ(Rewritten(L"[ 1 , [ ] , [ 2 , 3 ] , \"x\" ]"), L"[1,[],[2,3],\"x\"]");
}

TEST(JsonWriterTest, MembersAreInTheOrderOfTheirKeys) {
    const std::unique_ptr<JsonValue> value = JsonValue::MakeObject();
    value->Append(JsonValue::MakeNumber(1.0, L"b"));
    value->Append(JsonValue::MakeNumber(2.0, L"a"));
    EXPECT_EQ(WriteJson(value.get()), L"{\"a\":2,\"b\":1}");
}

TEST(JsonWriterTest, MembersHaveNoBlanksAroundThem) {
    EXPECT_EQ(Rewritten(L"{ }"), L"{}");
    EXPECT_EQ(Rewritten(L"{ \"a\" : { } , \"b\" : [ { \"c\" : null } ] }"), L"{\"a\":{},\"b\":[{\"c\":null}]}");
}

TEST(JsonWriterTest, KeysAreWrittenLikeStrings) {
    const std::unique_ptr<JsonValue> value = JsonValue::MakeObject();
    value->Append(JsonValue::MakeBool(true, L"a/\"\\\n\x01\x00E9"));
    EXPECT_EQ(WriteJson(value.get()), L"{\"a\\/\\\"\\\\\\n\\u0001\x00E9\":true}");
}

TEST(JsonWriterTest, AValueInsideATreeIsWrittenAlone) {
    const std::unique_ptr<JsonValue> value = Parsed(L"{\"a\":[1,{\"b\":2}],\"c\":3}");
    const JsonValue& array = MemberOf(*value, L"a");
    EXPECT_EQ(WriteJson(&array), L"[1,{\"b\":2}]");
    EXPECT_EQ(WriteJson(ChildrenOf(array)[0]), L"1");
    EXPECT_EQ(WriteJson(ChildrenOf(array)[1]), L"{\"b\":2}");
    EXPECT_EQ(WriteJson(&MemberOf(*value, L"c")), L"3");
}

// Strings of each length around the size of the pieces that the writer gathers, in front of what must not be cut.
TEST(JsonWriterTest, TextsOfAnyLengthAreWrittenWhole) {
    for (std::size_t length = 0; length < 1200; ++length) {
        const std::wstring plain(length, L'x');
        const std::wstring controls(length, L'\x01');
        EXPECT_EQ(Rewritten(L"[\"" + plain + L"\",-1.23456789012345e-300,\"\\u0001/\"]"),
                  L"[\"" + plain + L"\",-1.23456789012345e-300,\"\\u0001\\/\"]");
        EXPECT_EQ(Written(controls), L"\"" + Repeated(L"\\u0001", length) + L"\"");
    }
}

TEST(JsonWriterTest, AValueCanBeWrittenAgain) {
    const std::unique_ptr<JsonValue> value = Parsed(L"{\"a\":[1,2]}");
    EXPECT_EQ(WriteJson(value.get()), L"{\"a\":[1,2]}");
    EXPECT_EQ(WriteJson(value.get()), L"{\"a\":[1,2]}");
}

}  // namespace
