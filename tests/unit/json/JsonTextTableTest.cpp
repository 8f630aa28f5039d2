// Many texts, each with its whole result: the exact double, the text that it is written as, or that it is refused.
#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <limits>

#include "doubles/common/AllocationFaults.h"
#include "unit/json/JsonTestText.h"

namespace {

using namespace std::string_view_literals;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct NumberRow {
    std::wstring_view text;
    double value;
};

// A value in hexadecimal is one that step by step computation takes elsewhere than to the double nearest to the text.
constexpr NumberRow kNumbers[] = {
    // Whole numbers
    {L"0", 0.0},
    {L"-0", -0.0},
    {L"1", 1.0},
    {L"9", 9.0},
    {L"-1", -1.0},
    {L"10", 10.0},
    {L"42", 42.0},
    {L"100", 100.0},
    {L"65535", 65535.0},
    {L"-2147483648", -2147483648.0},
    {L"4294967296", 4294967296.0},
    {L"999999999999999", 999999999999999.0},
    {L"9007199254740992", 9007199254740992.0},
    {L"9007199254740993", 9007199254740992.0},
    {L"123456789012345678901234567890", 0x1.8ee90ff6c373dp+96},
    // Fractions
    {L"0.0", 0.0},
    {L"-0.0", -0.0},
    {L"0.1", 0.1},
    {L"0.2", 0.2},
    {L"0.3", 0x1.3333333333334p-2},
    {L"0.5", 0.5},
    {L"0.7", 0x1.6666666666667p-1},
    {L"0.25", 0.25},
    {L"0.125", 0.125},
    {L"-0.75", -0x1.8000000000001p-1},
    {L"1.0", 1.0},
    {L"1.50", 1.5},
    {L"10.01", 10.01},
    {L"0.123456789", 0x1.f9add37396360p-4},
    {L"0.000001", 0.000001},
    {L"3.14159265358979", 3.14159265358979},
    // Exponents
    {L"0e0", 0.0},
    {L"0E-5", 0.0},
    {L"-0e9", -0.0},
    {L"1e0", 1.0},
    {L"1e1", 10.0},
    {L"1E1", 10.0},
    {L"1e+1", 10.0},
    {L"1E+1", 10.0},
    {L"1e-1", 0.1},
    {L"1E-1", 0.1},
    {L"1E2", 100.0},
    {L"25e-1", 2.5},
    {L"0.1e1", 1.0},
    {L"1.5e3", 1500.0},
    {L"-1.25e2", -125.0},
    {L"1e00", 1.0},
    {L"1e01", 10.0},
    {L"1e-01", 0.1},
    {L"1e22", 1e22},
    {L"1e30", 0x1.93e5939a08ce9p+99},
    {L"1e100", 0x1.249ad2594c380p+332},
    {L"1e-6", 0x1.0c6f7a0b5ed8ep-20},
    {L"1e-7", 0x1.ad7f29abcaf4ap-24},
    {L"2.5e-10", 0x1.12e0be826d696p-32},
    {L"1e-300", 0x1.56e1fc2f8f366p-997},
    {L"1e308", 0x1.1ccf385ebc89fp+1023},
    {L"1.7976931348623157e308", 0x1.ffffffffffff9p+1023},
    {L"5e-324", 0x1p-1074},
    {L"1e-325", 0.0},
    {L"-1e-999999999", -0.0},
    {L"1e309", kInfinity},
    {L"-1e309", -kInfinity},
    {L"1e999999999", kInfinity},
};

struct RewrittenRow {
    std::wstring_view text;
    std::wstring_view rewritten;
};

constexpr RewrittenRow kRewritten[] = {
    // Numbers
    {L"1.0", L"1"},
    {L"1.50", L"1.5"},
    {L"-0", L"-0"},
    {L"-0.0e3", L"-0"},
    {L"0.3", L"0.3"},
    {L"0.7", L"0.7"},
    {L"1E2", L"100"},
    {L"25e-1", L"2.5"},
    {L"1e15", L"1e+15"},
    {L"1e20", L"1e+20"},
    {L"1e30", L"1e+30"},
    {L"1e100", L"1e+100"},
    {L"1e-4", L"0.0001"},
    {L"1e-5", L"1e-05"},
    {L"123456789012345", L"123456789012345"},
    {L"1234567890123456", L"1.23456789012346e+15"},
    {L"0.1234567890123456", L"0.123456789012346"},
    {L"1e400", L"null"},
    {L"-1e400", L"null"},
    {L"1e-400", L"0"},
    // Keywords
    {L"true", L"true"},
    {L"TRUE", L"true"},
    {L"True", L"true"},
    {L"tRUe", L"true"},
    {L"false", L"false"},
    {L"FALSE", L"false"},
    {L"False", L"false"},
    {L"falSE", L"false"},
    {L"null", L"null"},
    {L"NULL", L"null"},
    {L"nUlL", L"null"},
    {L"[true,FALSE,Null]", L"[true,false,null]"},
    // Strings and escapes
    {LR"("")", LR"("")"},
    {LR"("abc")", LR"("abc")"},
    {LR"("a b")", LR"("a b")"},
    {LR"("\"")", LR"("\"")"},
    {LR"("\\")", LR"("\\")"},
    {LR"("\/")", LR"("\/")"},
    {LR"("/")", LR"("\/")"},
    {LR"("\b\f\n\r\t")", LR"("\b\f\n\r\t")"},
    {L"\"\b\f\n\r\t\"", LR"("\b\f\n\r\t")"},
    {LR"("\u0041")", LR"("A")"},
    {LR"("\u00e9")", L"\"\x00E9\""},
    {LR"("\u00E9")", L"\"\x00E9\""},
    {LR"("\u20AC")", L"\"\x20AC\""},
    {LR"("\u0000")", LR"("\u0000")"},
    {LR"("\u001f")", LR"("\u001F")"},
    {LR"("\u000b")", LR"("\u000B")"},
    {LR"("\u0008")", LR"("\b")"},
    {LR"("\u0022\u005C\u002f")", LR"("\"\\\/")"},
    {LR"("\u007F")", L"\"\x7F\""},
    {LR"("\uD83D\uDE00")", L"\"\xD83D\xDE00\""},
    {LR"("\uDE00\uD83D")", L"\"\xDE00\xD83D\""},
    {LR"("\uFFFF")", L"\"\xFFFF\""},
    {L"\"\x30D5\x30A9\x30F3\x30C8\"", L"\"\x30D5\x30A9\x30F3\x30C8\""},
    {L"\"a\0b\""sv, LR"("a\u0000b")"},
    {L"\"\x1\"", LR"("\u0001")"},
    {LR"("{[,:]}")", LR"("{[,:]}")"},
    {LR"("C:\\Fonts\\a.otf")", LR"("C:\\Fonts\\a.otf")"},
    // Whitespace
    {L" 1 ", L"1"},
    {L"\t1\t", L"1"},
    {L"\r\n1\r\n", L"1"},
    {L"  {}  ", L"{}"},
    {L" [ ] ", L"[]"},
    {L"[ 1 ,\t2\n,\r3 ]", L"[1,2,3]"},
    {L"{ \"a\" :\t1\n,\r\"b\" : 2 }", L"{\"a\":1,\"b\":2}"},
    {L"\" a \"", L"\" a \""},
    // Structure
    {L"[]", L"[]"},
    {L"[[]]", L"[[]]"},
    {L"[[],[]]", L"[[],[]]"},
    {L"[{}]", L"[{}]"},
    {L"[[[[1]]]]", L"[[[[1]]]]"},
    {L"[1,[2,[3,[4]]],5]", L"[1,[2,[3,[4]]],5]"},
    {L"{}", L"{}"},
    {L"{\"\":\"\"}", L"{\"\":\"\"}"},
    {L"{\"a\":{}}", L"{\"a\":{}}"},
    {L"{\"b\":1,\"a\":2}", L"{\"a\":2,\"b\":1}"},
    {L"{\"b\":1,\"B\":2,\"a\":3,\"A\":4}", L"{\"A\":4,\"B\":2,\"a\":3,\"b\":1}"},
    {L"{\"10\":1,\"9\":2}", L"{\"10\":1,\"9\":2}"},
    {L"{\"a\":1,\"a\":2}", L"{\"a\":2}"},
    {L"{\"a\":[{\"b\":[{\"c\":null}]}]}", L"{\"a\":[{\"b\":[{\"c\":null}]}]}"},
    {LR"({"\u0061":1})", L"{\"a\":1}"},
    {LR"({"a\/b":1})", LR"({"a\/b":1})"},
    {L"[{\"a\":1},{\"a\":2}]", L"[{\"a\":1},{\"a\":2}]"},
};

constexpr std::wstring_view kRefused[] = {
    // Nothing there
    L"",
    L" ",
    L"\t\r\n",
    // Numbers
    L"01",
    L"-01",
    L"00",
    L"-",
    L"--1",
    L"+1",
    L".5",
    L"-.5",
    L"1.",
    L"-1.",
    L"1..2",
    L"1.2.3",
    L"1.e1",
    L"1e",
    L"1E",
    L"1e+",
    L"1e-",
    L"1e+-1",
    L"1e-+1",
    L"1e1.5",
    L"1e1e1",
    L"0x10",
    L"1_000",
    L"1,5",
    L"1f",
    L"- 1",
    L"1 e5",
    L"1 .5",
    L"Infinity",
    L"-Infinity",
    L"NaN",
    L"\x0661",
    // Keywords
    L"tru",
    L"t",
    L"trueX",
    L"true1",
    L"truefalse",
    L"fals",
    L"falsey",
    L"nul",
    L"nulll",
    L"yes",
    L"undefined",
    L"t rue",
    L"fal\x017F"
    L"e",
    // Strings and escapes
    L"\"",
    L"\"abc",
    L"abc\"",
    L"'abc'",
    L"abc",
    LR"("\")",
    LR"("\)",
    LR"("\a")",
    LR"("\v")",
    LR"("\0")",
    LR"("\x41")",
    LR"("\'")",
    LR"("\N")",
    LR"("\ ")",
    LR"("\u")",
    LR"("\u12")",
    LR"("\u123")",
    LR"("\u123g")",
    LR"("\uG123")",
    LR"("\u{41}")",
    LR"("\U0041")",
    LR"("\u123)",
    LR"("a" "b")",
    // Whitespace
    L"\v1",
    L"\f1",
    L"\x00A0"
    L"1",
    L"\xFEFF"
    L"1",
    L"\x2028"
    L"1",
    L"1\0"sv,
    L"\0"sv,
    // Structure
    L"[",
    L"]",
    L"[1",
    L"[1,",
    L"[1,2,]",
    L"[1 2]",
    L"[,1]",
    L"[,]",
    L"[1,,2]",
    L"[1;2]",
    L"[1}",
    L"[[]",
    L"[]]",
    L"(1)",
    L"{",
    L"}",
    L"{\"a\"",
    L"{\"a\":",
    L"{\"a\":1",
    L"{\"a\":1,",
    L"{\"a\":1,}",
    L"{\"a\"}",
    L"{\"a\":}",
    L"{\"a\" 1}",
    L"{\"a\"=1}",
    L"{\"a\",1}",
    L"{\"a\":1 \"b\":2}",
    L"{\"a\":1,,\"b\":2}",
    L"{,}",
    L"{:}",
    L"{a:1}",
    L"{1:1}",
    L"{true:1}",
    L"{\"a\":1]",
    L"{{}}",
    L"{[]}",
    // Trailing text
    L"{} x",
    L"{}{}",
    L"{},",
    L"[] []",
    L"1 1",
    L"1 ,",
    L"null null",
    L"\"a\"b",
    L"1//",
    L"/**/1",
    L"1 #",
};

static_assert(std::size(kNumbers) + std::size(kRewritten) + std::size(kRefused) >= 150);

TEST(JsonTextTableTest, EachNumberHasItsExactValue) {
    for (const NumberRow& row : kNumbers) {
        SCOPED_TRACE(std::wstring(row.text));
        const std::unique_ptr<JsonValue> value = ParseJson(row.text);
        ASSERT_NE(value, nullptr);
        ASSERT_TRUE(value->IsNumber());
        EXPECT_EQ(value->AsNumber(), row.value);
        EXPECT_EQ(std::signbit(value->AsNumber()), std::signbit(row.value));
    }
}

TEST(JsonTextTableTest, EachValidTextIsWrittenAsItsCompactForm) {
    for (const RewrittenRow& row : kRewritten) {
        SCOPED_TRACE(std::wstring(row.text));
        const std::unique_ptr<JsonValue> value = ParseJson(row.text);
        ASSERT_NE(value, nullptr);
        EXPECT_EQ(WriteJson(value.get()), row.rewritten);
    }
}

TEST(JsonTextTableTest, EachCompactFormIsWrittenAsItself) {
    for (const RewrittenRow& row : kRewritten) {
        SCOPED_TRACE(std::wstring(row.rewritten));
        EXPECT_EQ(Rewritten(row.rewritten), row.rewritten);
    }
}

TEST(JsonTextTableTest, EachInvalidTextIsRefusedAndLeaksNothing) {
    for (const std::wstring_view text : kRefused) {
        const std::ptrdiff_t before = LiveAllocations();
        const bool refused = IsRefused(text);
        const std::ptrdiff_t after = LiveAllocations();
        SCOPED_TRACE(std::wstring(text));
        EXPECT_TRUE(refused);
        EXPECT_EQ(after, before);
    }
}

}  // namespace
