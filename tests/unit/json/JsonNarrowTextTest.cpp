// ParseNarrowJson.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>

#include "doubles/common/AllocationFaults.h"
#include "doubles/common/ImportPatch.h"
#include "json/JsonParser.h"
#include "json/JsonWriter.h"
#include "unit/json/ScopedLocale.h"

namespace {

std::wstring RewrittenNarrow(const std::string& text) { return WriteJson(ParseNarrowJson(text).get()); }

TEST(JsonNarrowTextTest, AsciiTextParsesLikeWideText) {
    EXPECT_EQ(RewrittenNarrow("{ \"b\": [1, 2.5, TRUE, null], \"a\": \"x\\u00e9\" }"),
              L"{\"a\":\"x\x00E9\",\"b\":[1,2.5,true,null]}");
}

TEST(JsonNarrowTextTest, ErrorsGiveNull) {
    EXPECT_EQ(ParseNarrowJson(""), nullptr);
    EXPECT_EQ(ParseNarrowJson("  "), nullptr);
    EXPECT_EQ(ParseNarrowJson("[1,]"), nullptr);
    EXPECT_EQ(ParseNarrowJson("{} x"), nullptr);
}

TEST(JsonNarrowTextTest, EveryByteBecomesTheUnitOfItsValueInTheDefaultLocale) {
    for (unsigned byte = 0x20; byte <= 0xFF; ++byte) {
        if (byte == '"' || byte == '\\') continue;
        const std::unique_ptr<JsonValue> value = ParseNarrowJson(std::string{'"', static_cast<char>(byte), '"'});
        ASSERT_NE(value, nullptr) << byte;
        ASSERT_EQ(value->AsString(), std::wstring(1, static_cast<wchar_t>(byte))) << byte;
    }
}

TEST(JsonNarrowTextTest, Utf8IsNotDecoded) {
    EXPECT_EQ(ParseNarrowJson("\"\xC3\xA9\"")->AsString(), (std::wstring{0xC3, 0xA9}));
}

TEST(JsonNarrowTextTest, ANulByteEndsTheText) {
    EXPECT_EQ(RewrittenNarrow(std::string("[1]\0garbage", 11)), L"[1]");
    EXPECT_EQ(RewrittenNarrow(std::string("[1]") + std::string(4096, '\0')), L"[1]");
    EXPECT_EQ(ParseNarrowJson(std::string("\"a\0b\"", 5)), nullptr);
    EXPECT_EQ(ParseNarrowJson(std::string("\0[1]", 4)), nullptr);
}

TEST(JsonNarrowTextTest, TheCurrentLocaleDecides) {
    const ScopedLocale japanese(".932");
    // HIRAGANA LETTER A: two bytes, one unit.
    EXPECT_EQ(ParseNarrowJson("\"\x82\xA0\"")->AsString(), (std::wstring{0x3042}));
}

TEST(JsonNarrowTextTest, AConversionThatFailsGivesNull) {
    const ScopedLocale japanese(".932");
    const std::ptrdiff_t before = LiveAllocations();
    // The first byte of two without the second, behind a text that would parse.
    const std::unique_ptr<JsonValue> value = ParseNarrowJson("[1] \x82");
    EXPECT_EQ(value, nullptr);
    EXPECT_EQ(LiveAllocations(), before);
    EXPECT_NE(ParseNarrowJson("[1] "), nullptr);
}

// The runtime library, after it has written text that would parse.
errno_t __cdecl ConvertAndFail(std::size_t*, wchar_t* units, std::size_t size, const char*, std::size_t) {
    std::wstring(L"[1]").copy(units, size);
    return EILSEQ;
}

TEST(JsonNarrowTextTest, WhatTheLibraryRefusesIsNullWhateverItWrote) {
    const ImportPatch conversion("mbstowcs_s", AsReplacement(ConvertAndFail));
    EXPECT_EQ(ParseNarrowJson("[1] "), nullptr);
}

}  // namespace
