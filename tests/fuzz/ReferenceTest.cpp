// The references are code as well.
#include <gtest/gtest.h>

#include "fuzz/reference/Lines.h"
#include "fuzz/reference/Text.h"

namespace {

TEST(FuzzReferenceText, WellFormedUtf8IsReadBothWays) {
    const std::string utf8 = "a\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80\xF4\x8F\xBF\xBF";
    const std::wstring utf16 = L"a\x7F\x80\x7FF\x800\xFFFF\xD800\xDC00\xDBFF\xDFFF";
    EXPECT_EQ(ReferenceUtf16(utf8), utf16);
    EXPECT_EQ(ReferenceUtf8(utf16), utf8);
}

TEST(FuzzReferenceText, IllFormedUtf8IsRefused) {
    for (const char* text : {"\x80", "\xC1\x80", "\xC2", "\xC2\x41", "\xE0\x9F\x80", "\xE1\x80", "\xED\xA0\x80",
                             "\xEF\x80\xC0", "\xF0\x8F\x80\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"}) {
        EXPECT_FALSE(CodePointsOf(text)) << text;
    }
}

TEST(FuzzReferenceText, UnpairedSurrogateIsRefused) {
    for (const wchar_t* text : {L"\xD800", L"\xDC00", L"\xD800\x0041", L"\xDC00\xD800"}) {
        EXPECT_FALSE(ReferenceUtf8(text));
    }
}

TEST(FuzzReferenceText, WidenedIsAUnitForEachByte) { EXPECT_EQ(Widened("a\xFF"), L"a\xFF"); }

TEST(FuzzReferenceLines, LastLineNeedsNoEnd) {
    using Lines = std::vector<std::string>;
    EXPECT_EQ(LinesOf(""), Lines());
    EXPECT_EQ(LinesOf("\n"), Lines{""});
    EXPECT_EQ(LinesOf("a\r\n\nb"), (Lines{"a\r", "", "b"}));
}

TEST(FuzzReferenceLines, FirstLineIsTakenOff) {
    std::string_view rest = "a\nb";
    EXPECT_EQ(TakeLine(rest), "a");
    EXPECT_EQ(TakeLine(rest), "b");
    EXPECT_EQ(TakeLine(rest), "");
}

}  // namespace
