#include "support/TextConversion.h"

#include <gmock/gmock.h>
#include <utf8cpp/utf8.h>

namespace {

using namespace std::string_literals;

struct Pair {
    const char* name;
    std::string utf8;
    std::wstring utf16;
};

class TextConversionTest : public testing::TestWithParam<Pair> {};

TEST_P(TextConversionTest, GoesBothWays) {
    EXPECT_EQ(Utf8FromUtf16(GetParam().utf16), GetParam().utf8);
    EXPECT_EQ(Utf16FromUtf8(GetParam().utf8), GetParam().utf16);
}

INSTANTIATE_TEST_SUITE_P(Texts, TextConversionTest,
                         testing::Values(Pair{"Empty", "", L""}, Pair{"Ascii", "C:\\a.ai", L"C:\\a.ai"},
                                         Pair{"TwoBytes", "\xC3\xBC\xDF\xBF", L"\x00FC\x07FF"},
                                         Pair{"ThreeBytes", "\xE2\x82\xAC\xEF\xBF\xBF", L"\x20AC\xFFFF"},
                                         Pair{"AroundTheSurrogates", "\xED\x9F\xBF\xEE\x80\x80", L"\xD7FF\xE000"},
                                         Pair{"SurrogatePairs", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF",
                                              L"\xD800\xDC00\xDBFF\xDFFF"},
                                         Pair{"ZeroInside", "a\0b"s, L"a\0b"s}),
                         [](const auto& test) { return std::string(test.param.name); });

template <class Error, class Call>
void ExpectThrown(Call call, const char* text) {
    try {
        call();
        FAIL() << "nothing was thrown";
    } catch (const Error& error) {
        EXPECT_STREQ(error.what(), text);
    }
}

TEST(TextConversion, ThrowsForAByteThatBeginsNothing) {
    ExpectThrown<utf8::invalid_utf8>([] { Utf16FromUtf8("a\x80"); }, "Invalid UTF-8");
}

TEST(TextConversion, ThrowsForAByteThatContinuesNothing) {
    ExpectThrown<utf8::invalid_utf8>([] { Utf16FromUtf8("\xC3x"); }, "Invalid UTF-8");
}

TEST(TextConversion, ThrowsForAnOverlongForm) {
    ExpectThrown<utf8::invalid_utf8>([] { Utf16FromUtf8("\xC0\x80"); }, "Invalid UTF-8");
}

TEST(TextConversion, ThrowsForACharacterCutAtTheEnd) {
    ExpectThrown<utf8::not_enough_room>([] { Utf16FromUtf8("\xE2\x82"); }, "Not enough space");
}

TEST(TextConversion, ThrowsForASurrogateInUtf8) {
    ExpectThrown<utf8::invalid_code_point>([] { Utf16FromUtf8("\xED\xA0\x80"); }, "Invalid code point");
}

TEST(TextConversion, ThrowsForAnUnpairedSurrogate) {
    ExpectThrown<utf8::invalid_utf16>([] { Utf8FromUtf16(L"\xD83Dx"); }, "Invalid UTF-16");
    ExpectThrown<utf8::invalid_utf16>([] { Utf8FromUtf16(L"x\xD83D"); }, "Invalid UTF-16");
    ExpectThrown<utf8::invalid_utf16>([] { Utf8FromUtf16(L"\xDE00\xD83D"); }, "Invalid UTF-16");
}

TEST_P(TextConversionTest, TextOfWindowsIsConvertedAlikeWhenItIsWellFormed) {
    EXPECT_EQ(Utf8FromWindowsText(GetParam().utf16), GetParam().utf8);
}

TEST(TextConversion, UnpairedSurrogatesOfWindowsAreReplaced) {
    EXPECT_EQ(Utf8FromWindowsText(L"a\xD800"), "a\xEF\xBF\xBD");
    EXPECT_EQ(Utf8FromWindowsText(L"\xD800z"), "\xEF\xBF\xBDz");
    EXPECT_EQ(Utf8FromWindowsText(L"\xDC00\xD800\xDC00"), "\xEF\xBF\xBD\xF0\x90\x80\x80");
    EXPECT_EQ(Utf8FromWindowsText(L"\xD800\xD800\xDC00"), "\xEF\xBF\xBD\xF0\x90\x80\x80");
    EXPECT_EQ(Utf8FromWindowsText(L"\xDBFF\xE000"), "\xEF\xBF\xBD\xEE\x80\x80");
}

}  // namespace
