#include "support/TextConversion.h"

#include <gmock/gmock.h>
#include <utf8cpp/utf8.h>

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "doubles/common/AllocationFaults.h"

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

TEST_P(TextConversionTest, UnitsOfTheHostAreConvertedAlike) {
    const std::vector<std::uint16_t> units(GetParam().utf16.begin(), GetParam().utf16.end());
    EXPECT_EQ(Utf8FromUtf16(std::span(units)), GetParam().utf8);
}

// What the conversion by runs must not change: every mixture of characters of each size gives what the library gives
// unit by unit, and what is ill-formed the library's exception, to the text.
template <class Call>
std::string TextOrError(Call call) {
    try {
        return call();
    } catch (const utf8::exception& error) {
        return std::string("threw: ") + error.what();
    }
}

std::string BytesOf(const std::wstring& units) {
    return {reinterpret_cast<const char*>(units.data()), units.size() * sizeof(wchar_t)};
}

std::string LibrarysUtf16(const std::string& utf8) {
    return TextOrError([&] {
        std::wstring units;
        utf8::utf8to16(utf8.begin(), utf8.end(), std::back_inserter(units));
        return BytesOf(units);
    });
}

std::string LibrarysUtf8(const std::wstring& units) {
    return TextOrError([&] {
        std::string utf8;
        utf8::utf16to8(units.begin(), units.end(), std::back_inserter(utf8));
        return utf8;
    });
}

// All sequences of up to four parts.
template <class Text, std::size_t count, class Check>
void ForEachSequence(const Text (&parts)[count], const Check& check) {
    std::size_t sequences = 1;
    for (int length = 0; length <= 4; ++length, sequences *= count) {
        for (std::size_t number = 0; number < sequences; ++number) {
            Text text;
            std::size_t rest = number;
            for (int i = 0; i < length; ++i, rest /= count) {
                text += parts[rest % count];
            }
            check(text);
        }
    }
}

TEST(TextConversion, GivesWhatTheLibraryGivesForEverySequenceOfBytes) {
    const std::string parts[] = {"a",    "bc",       "\xC3\xBC", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\x80",
                                 "\xC3", "\xE2\x82", "\xF0\x9F", "\xED\xA0\x80", "\xC0\x80",         "\xFF"};
    ForEachSequence(parts, [](const std::string& text) {
        const std::string ours = TextOrError([&] { return BytesOf(Utf16FromUtf8(text)); });
        ASSERT_EQ(ours, LibrarysUtf16(text)) << testing::PrintToString(text);
    });
}

TEST(TextConversion, GivesWhatTheLibraryGivesForEverySequenceOfUnits) {
    const std::wstring parts[] = {L"a", L"bc", L"\x00FC", L"\x20AC", L"\xD83D\xDE00", L"\xD83D", L"\xDE00", L"\xFFFF"};
    ForEachSequence(parts, [](const std::wstring& text) {
        const std::string ours = TextOrError([&] { return Utf8FromUtf16(text); });
        ASSERT_EQ(ours, LibrarysUtf8(text)) << testing::PrintToString(text);
    });
}

// Wherever in a long text it stands.
TEST(TextConversion, FindsWhatIsNotAsciiAtEveryPlaceOfALongText) {
    for (std::size_t place = 0; place < 70; ++place) {
        const std::string before(place, 'x');
        const std::wstring wideBefore(place, L'x');
        for (const std::size_t size : {0, 1, 15, 16, 17, 40}) {
            const std::string after(size, 'y');
            const std::wstring wideAfter(size, L'y');
            EXPECT_EQ(Utf16FromUtf8(before + "\xC2\x80" + after), wideBefore + L"\x0080" + wideAfter) << place;
            EXPECT_EQ(Utf8FromUtf16(wideBefore + L"\x0080" + wideAfter), before + "\xC2\x80" + after) << place;
            EXPECT_THROW(Utf16FromUtf8(before + "\x80" + after), utf8::invalid_utf8) << place;
            EXPECT_THROW(Utf8FromUtf16(wideBefore + L"\xDC00" + wideAfter), utf8::invalid_utf16) << place;
        }
    }
}

TEST_P(TextConversionTest, LongTextTakesOneBlockOfMemory) {
    Pair text = GetParam();
    for (int i = 0; i < 100; ++i) {
        text.utf8 += GetParam().utf8 + "x";
        text.utf16 += GetParam().utf16 + L"x";
    }
    const std::vector<std::uint16_t> units(text.utf16.begin(), text.utf16.end());
    const std::size_t before = AllocationsMade();
    EXPECT_EQ(Utf16FromUtf8(text.utf8), text.utf16);
    EXPECT_EQ(AllocationsMade() - before, 1u);
    EXPECT_EQ(Utf8FromUtf16(text.utf16), text.utf8);
    EXPECT_EQ(AllocationsMade() - before, 2u);
    EXPECT_EQ(Utf8FromUtf16(std::span(units)), text.utf8);
    EXPECT_EQ(AllocationsMade() - before, 3u);
}

TEST(TextConversion, UnpairedSurrogatesOfWindowsAreReplaced) {
    EXPECT_EQ(Utf8FromWindowsText(L"a\xD800"), "a\xEF\xBF\xBD");
    EXPECT_EQ(Utf8FromWindowsText(L"\xD800z"), "\xEF\xBF\xBDz");
    EXPECT_EQ(Utf8FromWindowsText(L"\xDC00\xD800\xDC00"), "\xEF\xBF\xBD\xF0\x90\x80\x80");
    EXPECT_EQ(Utf8FromWindowsText(L"\xD800\xD800\xDC00"), "\xEF\xBF\xBD\xF0\x90\x80\x80");
    EXPECT_EQ(Utf8FromWindowsText(L"\xDBFF\xE000"), "\xEF\xBF\xBD\xEE\x80\x80");
}

}  // namespace
