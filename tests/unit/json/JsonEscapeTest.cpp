#include "json/JsonEscape.h"

#include <gtest/gtest.h>

namespace {

TEST(JsonEscapeTest, StandsBehindTheBackslashAndIsSteppedOver) {
    JsonTextCursor cursor(L"nu00E9x");
    EXPECT_EQ(ReadJsonEscape(cursor), L'\n');
    EXPECT_EQ(ReadJsonEscape(cursor), L'\x00E9');
    EXPECT_EQ(cursor.Rest(), L"x");
    EXPECT_EQ(ReadJsonEscape(cursor), std::nullopt);
}

TEST(JsonEscapeTest, TheTextMayEndInIt) {
    for (const wchar_t* text : {L"", L"u", L"u0", L"u00", L"u00E"}) {
        JsonTextCursor cursor(text);
        EXPECT_EQ(ReadJsonEscape(cursor), std::nullopt) << text;
    }
}

TEST(JsonEscapeTest, EveryHexadecimalDigitHasItsValue) {
    for (int value = 0; value < 16; ++value) {
        for (const wchar_t digit : {L"0123456789abcdef"[value], L"0123456789ABCDEF"[value]}) {
            JsonTextCursor cursor(std::wstring_view(&digit, 1));
            EXPECT_EQ(ReadJsonHexUnit(cursor), std::nullopt);
            const wchar_t four[] = {digit, L'0', L'0', digit};
            cursor = JsonTextCursor(std::wstring_view(four, 4));
            EXPECT_EQ(ReadJsonHexUnit(cursor), static_cast<wchar_t>(value * 0x1001));
            EXPECT_TRUE(cursor.AtEnd());
        }
    }
}

}  // namespace
