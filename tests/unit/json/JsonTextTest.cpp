#include "json/JsonText.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::wstring Copied(const JsonText& text) {
    std::wstring units(text.Size(), L'?');
    text.CopyTo(units.data());
    return units;
}

TEST(JsonTextTest, ATextIsCopiedAsItIs) {
    EXPECT_EQ(Copied(L"a literal"), L"a literal");
    EXPECT_EQ(Copied(std::wstring(L"a\0b", 3)), std::wstring(L"a\0b", 3));
    EXPECT_EQ(Copied(std::wstring_view(L"a\\n\"b")), L"a\\n\"b");
}

TEST(JsonTextTest, NothingIsEmpty) {
    EXPECT_EQ(JsonText().Size(), 0u);
    EXPECT_EQ(Copied({}), L"");
    EXPECT_EQ(Copied(L""), L"");
}

TEST(JsonTextTest, EscapesAreResolved) {
    EXPECT_EQ(Copied(JsonText(LR"(\n)", 1)), L"\n");
    EXPECT_EQ(Copied(JsonText(LR"(C:\\a\/\u00e9\"b\u0000)", 9)), std::wstring(L"C:\\a/\x00E9\"b\0", 9));
}

}  // namespace
