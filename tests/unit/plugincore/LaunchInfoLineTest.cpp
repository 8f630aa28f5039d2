#include "plugincore/LaunchInfoLine.h"

#include <gtest/gtest.h>

namespace {

using Value = std::optional<std::string>;

Value LumetPath(std::string_view line) { return LaunchInfoLineValue(line, "lumet.path"); }

TEST(LaunchInfoLine, ValueStandsBehindTheEqualSign) {
    EXPECT_EQ(LumetPath("lumet.path=C:\\Program Files\\App\\Lumet.exe"), Value("C:\\Program Files\\App\\Lumet.exe"));
}

TEST(LaunchInfoLine, KeyIsFoundAnywhereInTheLine) {
    EXPECT_EQ(LumetPath("xlumet.path=D:/x/y.exe"), Value("D:/x/y.exe"));
    EXPECT_EQ(LumetPath("other=lumet.path"), Value("lumet.path"));
    EXPECT_EQ(LumetPath("# lumet.path2 = a"), Value(" a"));
}

TEST(LaunchInfoLine, KeyIsCaseSensitive) {
    EXPECT_EQ(LumetPath("Lumet.path=a"), std::nullopt);
    EXPECT_EQ(LumetPath("lumet.Path=a"), std::nullopt);
}

TEST(LaunchInfoLine, LineWithoutTheKeyYieldsNothing) {
    EXPECT_EQ(LumetPath("lumet.version=3"), std::nullopt);
    EXPECT_EQ(LumetPath(""), std::nullopt);
}

TEST(LaunchInfoLine, EmptyKeyMatchesEveryLine) { EXPECT_EQ(LaunchInfoLineValue("anything=a", ""), Value("a")); }

TEST(LaunchInfoLine, BlanksAndQuotesStay) {
    EXPECT_EQ(LumetPath("lumet.path = C:\\A\\b.exe"), Value(" C:\\A\\b.exe"));
    EXPECT_EQ(LumetPath("lumet.path=\t\"C:\\b.exe\" "), Value("\t\"C:\\b.exe\" "));
}

TEST(LaunchInfoLine, FirstEqualSignCounts) {
    EXPECT_EQ(LumetPath("lumet.path=a=b"), Value("a=b"));
    EXPECT_EQ(LumetPath("a=b lumet.path=c"), Value("b lumet.path=c"));
}

TEST(LaunchInfoLine, LineWithoutAnEqualSignYieldsNothing) { EXPECT_EQ(LumetPath("lumet.path"), std::nullopt); }

TEST(LaunchInfoLine, NothingBehindTheEqualSignIsAnEmptyValue) {
    EXPECT_EQ(LumetPath("lumet.path="), Value(""));
    EXPECT_EQ(LumetPath("lumet.path=\r"), Value(""));
}

TEST(LaunchInfoLine, ValueEndsAtTheFirstCarriageReturn) {
    EXPECT_EQ(LumetPath("lumet.path=a\r"), Value("a"));
    EXPECT_EQ(LumetPath("lumet.path=a\r\n"), Value("a"));
    EXPECT_EQ(LumetPath("lumet.path=a\rb\rc"), Value("a"));
    EXPECT_EQ(LumetPath("lumet.path=a\nb\rc"), Value("a\nb"));
}

TEST(LaunchInfoLine, ValueEndsAtTheFirstLineFeedWithoutACarriageReturn) {
    EXPECT_EQ(LumetPath("lumet.path=a\nb\n"), Value("a"));
}

TEST(LaunchInfoLine, EndBeforeTheEqualSignYieldsNothing) {
    EXPECT_EQ(LumetPath("lumet.path\r=a"), std::nullopt);
    EXPECT_EQ(LumetPath("lumet.path\n=a"), std::nullopt);
}

Value FirstOf(std::string_view text) { return FirstLaunchInfoValue(text, "lumet.path"); }

TEST(LaunchInfoLines, FirstLineWithAValueCounts) {
    EXPECT_EQ(FirstOf("version=3\nlumet.path\nlumet.path=a\nlumet.path=b\n"), Value("a"));
    EXPECT_EQ(FirstOf("lumet.path=a"), Value("a"));
    EXPECT_EQ(FirstOf("\n\nlumet.path=\nlumet.path=b\n"), Value(""));
}

TEST(LaunchInfoLines, NoLineWithAValueIsNothing) {
    EXPECT_EQ(FirstOf(""), std::nullopt);
    EXPECT_EQ(FirstOf("version=3\nlumet.path\n"), std::nullopt);
}

}  // namespace
