#include <gtest/gtest.h>

#include "doubles/common/Text.h"

namespace {

using simhost::HostUnits;

TEST(HostUnits, TextIsConverted) {
    EXPECT_EQ(HostUnits(""), u"");
    EXPECT_EQ(HostUnits("Gr\xC3\xB6\xC3\x9F"
                        "e"),
              u"Gr\u00F6\u00DFe");
    EXPECT_EQ(HostUnits("\xED\x9F\xBF\xF0\x9F\x98\x80"), u"\uD7FF\U0001F600");
}

TEST(HostUnits, UnpairedSurrogateStaysWhatItIs) {
    const std::u16string high(1, char16_t{0xD800});
    const std::u16string low(1, char16_t{0xDFFF});
    EXPECT_EQ(HostUnits("a\xED\xA0\x80"
                        "b"),
              u"a" + high + u"b");
    EXPECT_EQ(HostUnits("\xED\xBF\xBF"), low);
    EXPECT_EQ(HostUnits("\xED\xBF\xBF\xED\xA0\x80"), low + high);
}

TEST(HostUnits, WhatIsNoTextIsEmpty) {
    EXPECT_EQ(HostUnits("a\xE3"), u"");
    EXPECT_EQ(HostUnits("\xED\xA0"), u"");
}

}  // namespace
