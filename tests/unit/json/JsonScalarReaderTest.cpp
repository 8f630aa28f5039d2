#include "json/JsonScalarReader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "unit/json/JsonTestText.h"

namespace {

using namespace std::string_view_literals;

// The number at the start of the text, and what the reader left behind it.
struct ReadNumber {
    double value;
    std::wstring rest;
    bool operator==(const ReadNumber&) const = default;
};

ReadNumber NumberAtStartOf(std::wstring_view text) {
    JsonTextCursor cursor(text);
    const std::optional<double> number = ReadJsonNumber(cursor);
    if (!number) throw std::invalid_argument("no number stands there");
    return {*number, std::wstring(cursor.Rest())};
}

bool HasNoNumber(std::wstring_view text) {
    JsonTextCursor cursor(text);
    return !ReadJsonNumber(cursor);
}

TEST(JsonScalarReaderTest, ANumberEndsWhereItsGrammarEnds) {
    EXPECT_EQ(NumberAtStartOf(L"01"), (ReadNumber{0.0, L"1"}));
    EXPECT_EQ(NumberAtStartOf(L"12x"), (ReadNumber{12.0, L"x"}));
    EXPECT_EQ(NumberAtStartOf(L"1.5.5"), (ReadNumber{1.5, L".5"}));
    EXPECT_EQ(NumberAtStartOf(L"1e2e3"), (ReadNumber{100.0, L"e3"}));
    EXPECT_EQ(NumberAtStartOf(L"1e2.5"), (ReadNumber{100.0, L".5"}));
    EXPECT_EQ(NumberAtStartOf(L"7,8"), (ReadNumber{7.0, L",8"}));
}

TEST(JsonScalarReaderTest, NoIntegerDigitsAreReadAfterALeadingZero) {
    EXPECT_TRUE(IsRefused(L"01"));
    EXPECT_TRUE(IsRefused(L"-00"));
    EXPECT_TRUE(IsRefused(L"00.5"));
    EXPECT_EQ(ParsedNumber(L"0.5"), 0.5);
    EXPECT_EQ(ParsedNumber(L"0e1"), 0.0);
    EXPECT_EQ(ParsedNumber(L"10"), 10.0);
}

TEST(JsonScalarReaderTest, MinusZeroKeepsItsSign) {
    EXPECT_TRUE(std::signbit(ParsedNumber(L"-0")));
    EXPECT_TRUE(std::signbit(ParsedNumber(L"-0.0e5")));
    EXPECT_FALSE(std::signbit(ParsedNumber(L"0")));
    EXPECT_EQ(ParsedNumber(L"-0"), 0.0);
}

TEST(JsonScalarReaderTest, APointNeedsADigitBehindIt) {
    EXPECT_TRUE(HasNoNumber(L"1."));
    EXPECT_TRUE(HasNoNumber(L"1.e2"));
    EXPECT_TRUE(HasNoNumber(L"-0.x"));
}

TEST(JsonScalarReaderTest, AnExponentNeedsADigit) {
    EXPECT_TRUE(HasNoNumber(L"1e"));
    EXPECT_TRUE(HasNoNumber(L"1E+"));
    EXPECT_TRUE(HasNoNumber(L"1e-"));
    EXPECT_TRUE(HasNoNumber(L"1e+-2"));
    EXPECT_TRUE(HasNoNumber(L"1e-+2"));
    EXPECT_TRUE(HasNoNumber(L"1e--2"));
    EXPECT_TRUE(HasNoNumber(L"0.5ex"));
}

TEST(JsonScalarReaderTest, ANumberBeginsWithAMinusOrADigit) {
    EXPECT_TRUE(HasNoNumber(L""));
    EXPECT_TRUE(HasNoNumber(L"-"));
    EXPECT_TRUE(HasNoNumber(L"--1"));
    EXPECT_TRUE(HasNoNumber(L"+1"));
    EXPECT_TRUE(HasNoNumber(L".5"));
    EXPECT_TRUE(HasNoNumber(L"-.5"));
    EXPECT_TRUE(HasNoNumber(L"e5"));
    EXPECT_TRUE(HasNoNumber(L"\x0661"));  // ARABIC-INDIC DIGIT ONE
    EXPECT_TRUE(HasNoNumber(L"\xFF11"));  // FULLWIDTH DIGIT ONE
}

TEST(JsonScalarReaderTest, IntegerDigitsAccumulateInADouble) {
    EXPECT_EQ(ParsedNumber(L"9007199254740993"), 9007199254740992.0);
    // Each step rounds: converted as a whole, the text would be 0x1.8ee90ff6c373ep+96.
    EXPECT_EQ(ParsedNumber(L"123456789012345678901234567890"), 0x1.8ee90ff6c373dp+96);
}

TEST(JsonScalarReaderTest, FractionDigitsAreAddedWithTheirWeights) {
    // 3 x 0.1 is not the double nearest to 0.3; nor do the sums below give the nearest ones.
    EXPECT_EQ(ParsedNumber(L"0.3"), 0x1.3333333333334p-2);
    EXPECT_EQ(ParsedNumber(L"0.7"), 0x1.6666666666667p-1);
    EXPECT_EQ(ParsedNumber(L"0.123456789"), 0x1.f9add37396360p-4);
    EXPECT_EQ(ParsedNumber(L"12.75"), 12.75);
}

TEST(JsonScalarReaderTest, EachWeightIsTheDoubleNearestToItsPowerOfTen) {
    // Divided by ten again and again, the weight would differ from the sixth place on.
    EXPECT_EQ(ParsedNumber(L"0.01"), 0.01);
    EXPECT_EQ(ParsedNumber(L"0.000001"), 0.000001);
    EXPECT_EQ(ParsedNumber(L"0.00000000000001"), 0.00000000000001);
}

TEST(JsonScalarReaderTest, AnExponentMultipliesOrDividesByTen) {
    EXPECT_EQ(ParsedNumber(L"1E2"), 100.0);
    EXPECT_EQ(ParsedNumber(L"25e-1"), 2.5);
    EXPECT_EQ(ParsedNumber(L"1e+2"), 100.0);
    EXPECT_EQ(ParsedNumber(L"1.5E3"), 1500.0);
    EXPECT_EQ(ParsedNumber(L"1e0"), 1.0);
    EXPECT_EQ(ParsedNumber(L"1e-0"), 1.0);
    EXPECT_EQ(ParsedNumber(L"1e0003"), 1000.0);
    EXPECT_EQ(ParsedNumber(L"-12.75e-2"), -0x1.051eb851eb852p-3);
}

TEST(JsonScalarReaderTest, AnExponentIsAppliedOneStepAtATime) {
    // A power of ten applied at once would give the doubles nearest to 1e-6, 1e30, 1e100 and 1e-300.
    EXPECT_EQ(ParsedNumber(L"1e-6"), 0x1.0c6f7a0b5ed8ep-20);
    EXPECT_EQ(ParsedNumber(L"1e30"), 0x1.93e5939a08ce9p+99);
    EXPECT_EQ(ParsedNumber(L"1e100"), 0x1.249ad2594c380p+332);
    EXPECT_EQ(ParsedNumber(L"1e-300"), 0x1.56e1fc2f8f366p-997);
}

TEST(JsonScalarReaderTest, ANumberTooLargeBecomesInfinite) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(ParsedNumber(L"1e309"), infinity);
    EXPECT_EQ(ParsedNumber(L"-1e309"), -infinity);
    EXPECT_EQ(ParsedNumber(Repeated(L"9", 400)), infinity);
    // Infinite before the exponent is read, and so it stays.
    EXPECT_EQ(ParsedNumber(Repeated(L"9", 400) + L".5e-399"), infinity);
}

TEST(JsonScalarReaderTest, ANumberTooSmallBecomesZero) {
    EXPECT_EQ(ParsedNumber(L"5e-324"), 0x1p-1074);
    EXPECT_EQ(ParsedNumber(L"1e-400"), 0.0);
    EXPECT_TRUE(std::signbit(ParsedNumber(L"-1e-400")));
}

TEST(JsonScalarReaderTest, AFractionOfAnyLengthIsRead) {
    EXPECT_EQ(ParsedNumber(L"1." + Repeated(L"0", 100000) + L"9"), 1.0);
    EXPECT_EQ(ParsedNumber(L"0." + Repeated(L"0", 400) + L"1e400"), 0.0);
}

TEST(JsonScalarReaderTest, AHugeExponentEndsAtOnceAndDoesNotOverflow) {
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(ParsedNumber(L"1e999999999"), infinity);
    EXPECT_EQ(ParsedNumber(L"1e-999999999"), 0.0);
    EXPECT_EQ(ParsedNumber(L"0e999999999"), 0.0);
    // Numbers that would come round to a small one in 32 or 64 bits.
    EXPECT_EQ(ParsedNumber(L"1e4294967298"), infinity);
    EXPECT_EQ(ParsedNumber(L"1e18446744073709551618"), infinity);
    EXPECT_EQ(ParsedNumber(L"1e" + Repeated(L"9", 100000)), infinity);
}

TEST(JsonScalarReaderTest, AnExponentTakesTheSmallestDoubleToTheLargest) {
    // All of the steps count: a limit on them that is too low shows here.
    const std::wstring small = L"0." + Repeated(L"0", 299) + L"1";
    EXPECT_NEAR(ParsedNumber(small + L"e600") / 1e300, 1.0, 1e-10);
    EXPECT_NEAR(ParsedNumber(L"1" + Repeated(L"0", 300) + L"e-600") / 1e-300, 1.0, 1e-10);
}

TEST(JsonScalarReaderTest, KeywordsAreTakenInAnyCase) {
    EXPECT_TRUE(Parsed(L"TRUE")->AsBool());
    EXPECT_TRUE(Parsed(L"tRuE")->AsBool());
    EXPECT_FALSE(Parsed(L"False")->AsBool());
    EXPECT_FALSE(Parsed(L"FALSE")->AsBool());
    EXPECT_TRUE(Parsed(L"nUlL")->IsNull());
    EXPECT_TRUE(Parsed(L"NULL")->IsNull());
}

TEST(JsonScalarReaderTest, AKeywordIsComparedOverItsOwnLength) {
    JsonTextCursor cursor(L"trueX");
    const std::unique_ptr<JsonValue> value = ReadJsonScalar(cursor, {});
    ASSERT_NE(value, nullptr);
    EXPECT_TRUE(value->AsBool());
    EXPECT_EQ(cursor.Rest(), L"X");
    EXPECT_TRUE(IsRefused(L"trueX"));
    EXPECT_TRUE(IsRefused(L"nullnull"));
}

TEST(JsonScalarReaderTest, AnIncompleteKeywordIsRefused) {
    for (const wchar_t* text : {L"t", L"tru", L"fals", L"nul", L"yes", L"nil", L"[nul]"}) {
        EXPECT_TRUE(IsRefused(text)) << text;
    }
}

TEST(JsonScalarReaderTest, OnlyAsciiLettersAreTheSameInBothCases) {
    EXPECT_TRUE(
        IsRefused(L"fal\x017F"
                  L"e"));  // LATIN SMALL LETTER LONG S, the upper case of which is S
    EXPECT_TRUE(IsRefused(L"n\x00FCll"));
    EXPECT_TRUE(IsRefused(L"\x0054\x0052\x0055\x0045\x0000"sv));
    EXPECT_TRUE(IsRefused(L"\x4E55\x4C4C"));
}

TEST(JsonScalarReaderTest, EachEscapeStandsForItsUnit) {
    EXPECT_EQ(ParsedString(LR"("\"")"), L"\"");
    EXPECT_EQ(ParsedString(LR"("\\")"), L"\\");
    EXPECT_EQ(ParsedString(LR"("\/")"), L"/");
    EXPECT_EQ(ParsedString(LR"("\b")"), std::wstring(1, 8));
    EXPECT_EQ(ParsedString(LR"("\f")"), std::wstring(1, 12));
    EXPECT_EQ(ParsedString(LR"("\n")"), std::wstring(1, 10));
    EXPECT_EQ(ParsedString(LR"("\r")"), std::wstring(1, 13));
    EXPECT_EQ(ParsedString(LR"("\t")"), std::wstring(1, 9));
}

TEST(JsonScalarReaderTest, AnyOtherEscapeIsRefused) {
    // Every ASCII character; the letters are those that do begin an escape, of which "u" wants digits.
    for (wchar_t unit = 0; unit < 128; ++unit) {
        const std::wstring text = {L'"', L'\\', unit, L'"', L'"'};
        const bool isEscape = std::wstring_view(L"\"\\/bfnrt").find(unit) != std::wstring_view::npos;
        JsonTextCursor cursor(text);
        EXPECT_EQ(ReadJsonString(cursor).has_value(), isEscape) << static_cast<int>(unit);
    }
}

TEST(JsonScalarReaderTest, FourHexadecimalDigitsGiveOneUnitMostSignificantFirst) {
    EXPECT_EQ(ParsedString(LR"("\u1234")"), L"\x1234");
    EXPECT_EQ(ParsedString(LR"("\uaBcD")"), L"\xABCD");
    EXPECT_EQ(ParsedString(LR"("\uFFFF")"), L"\xFFFF");
    EXPECT_EQ(ParsedString(LR"("\u00e95")"),
              L"\x00E9"
              L"5");
    EXPECT_EQ(ParsedString(LR"("\u0000")"), std::wstring(1, 0));
}

TEST(JsonScalarReaderTest, FewerThanFourHexadecimalDigitsAreRefused) {
    for (const wchar_t* text : {LR"("\u")", LR"("\u1")", LR"("\u12")", LR"("\u123")", LR"("\u123g")", LR"("\u 123")",
                                LR"("\u-123")", LR"("\u+123")", LR"("\u0x12")", LR"("\U1234")", LR"("\u@ABC")",
                                LR"("\u`abc")", LR"("\u:000")", LR"("\u/000")", LR"("\u00G0")"}) {
        EXPECT_TRUE(IsRefused(text)) << text;
    }
    EXPECT_TRUE(IsRefused(LR"("\u123)"));
    EXPECT_TRUE(IsRefused(LR"("\u)"));
}

TEST(JsonScalarReaderTest, SurrogatesAreNeitherCombinedNorChecked) {
    EXPECT_EQ(ParsedString(LR"("\uD83D\uDE00")").size(), 2u);
    EXPECT_EQ(ParsedString(LR"("\uD83D\uDE00")"), (std::wstring{0xD83D, 0xDE00}));
    EXPECT_EQ(ParsedString(LR"("\uDE00")"), (std::wstring{0xDE00}));
}

TEST(JsonScalarReaderTest, AStringWithoutItsClosingQuoteIsRefused) {
    EXPECT_TRUE(IsRefused(L"\""));
    EXPECT_TRUE(IsRefused(L"\"abc"));
    EXPECT_TRUE(IsRefused(LR"("abc\")"));
    EXPECT_TRUE(IsRefused(LR"("abc\)"));
}

TEST(JsonScalarReaderTest, ControlCharactersInAStringAreKept) {
    EXPECT_EQ(ParsedString(L"\"a\tb\r\nc\x01\x1F\x7F\""), L"a\tb\r\nc\x01\x1F\x7F");
}

TEST(JsonScalarReaderTest, ANulInAStringIsKept) { EXPECT_EQ(ParsedString(L"\"a\0b\""sv), L"a\0b"sv); }

TEST(JsonScalarReaderTest, AStringEndsAtItsFirstUnescapedQuote) {
    JsonTextCursor cursor(LR"("a\"b"rest")");
    const std::optional<JsonText> text = ReadJsonString(cursor);
    ASSERT_TRUE(text.has_value());
    EXPECT_EQ(JsonValue::MakeString(*text)->AsString(), LR"(a"b)");
    EXPECT_EQ(cursor.Rest(), LR"(rest")");
}

}  // namespace
