#include "diagnostic/TextWriter.h"

#include <gtest/gtest.h>

#include <string>

namespace {

template <std::size_t kSize>
struct Memory {
    char bytes[kSize];
    TextWriter writer{bytes};
};

TEST(TextWriter, BeginsEmptyAndTerminated) {
    Memory<8> memory;
    EXPECT_EQ(memory.writer.Text(), "");
    EXPECT_STREQ(memory.writer.Terminated(), "");
}

TEST(TextWriter, AppendsTextsCharactersFormatsAndNumbers) {
    Memory<64> memory;
    memory.writer.Append("one ");
    memory.writer.Append('-', 3);
    memory.writer.AppendFormat(" %d %s", 7, "two");
    memory.writer.Append(" ");
    memory.writer.AppendNumber(0xFFFFFFFFFFFFFFFF);
    memory.writer.Append(" ");
    memory.writer.AppendNumber(0xABC, 16);
    EXPECT_EQ(memory.writer.Text(), "one --- 7 two 18446744073709551615 abc");
    EXPECT_STREQ(memory.writer.Terminated(), "one --- 7 two 18446744073709551615 abc");
}

TEST(TextWriter, LeavesOutWhatDoesNotFit) {
    Memory<6> memory;
    memory.writer.Append("abc");
    memory.writer.Append("defg");
    EXPECT_EQ(memory.writer.Text(), "abcde");
    memory.writer.Append("h");
    memory.writer.Append('i', 9);
    memory.writer.AppendFormat("%s", "jk");
    EXPECT_STREQ(memory.writer.Terminated(), "abcde");
}

TEST(TextWriter, FormatIsCutWhereTheMemoryEnds) {
    Memory<6> memory;
    memory.writer.AppendFormat("%d", 1234567);
    EXPECT_EQ(memory.writer.Text(), "12345");
}

TEST(TextWriter, NeverCutsWithinACharacter) {
    Memory<4> memory;
    memory.writer.Append("ab\xC3\xA9");
    EXPECT_EQ(memory.writer.Text(), "ab");
}

TEST(TextWriter, WideTextBecomesUtf8) {
    Memory<512> memory;
    const std::wstring wide = L"\u20AC \xD83D\xDE00 " + std::wstring(100, L'\u00FC');
    memory.writer.Append(std::wstring_view(wide));
    std::string expected = "\xE2\x82\xAC \xF0\x9F\x98\x80 ";
    for (int i = 0; i < 100; ++i) {
        expected += "\xC3\xBC";
    }
    EXPECT_EQ(memory.writer.Text(), expected);
}

TEST(TextWriter, PairOfUnitsAtTheEndOfAPieceStaysWhole) {
    for (const std::size_t before : {61u, 62u, 63u, 64u}) {
        Memory<512> memory;
        const std::wstring wide = std::wstring(before, L'a') + L"\xD83D\xDE00z";
        memory.writer.Append(std::wstring_view(wide));
        EXPECT_EQ(memory.writer.Text(), std::string(before, 'a') + "\xF0\x9F\x98\x80z") << before;
    }
}

TEST(TextWriter, QuotedTextStaysOnOneLine) {
    Memory<64> memory;
    memory.writer.AppendQuoted("a\nb\r\tc\x01\"d\\");
    EXPECT_EQ(memory.writer.Text(), R"("a\nb\r\tc<01>"d\")");
}

TEST(TextWriter, QuotedNullHasNoQuotationMarks) {
    Memory<64> memory;
    memory.writer.AppendQuoted(nullptr);
    EXPECT_EQ(memory.writer.Text(), "null");
}

TEST(TextWriter, QuotedTextOf200BytesIsWhole) {
    Memory<512> memory;
    memory.writer.AppendQuoted(std::string(200, 'x').c_str());
    EXPECT_EQ(memory.writer.Text(), "\"" + std::string(200, 'x') + "\"");
}

TEST(TextWriter, LongerQuotedTextIsCutAndItsSizeTold) {
    Memory<512> memory;
    memory.writer.AppendQuoted(std::string(201, 'x').c_str());
    EXPECT_EQ(memory.writer.Text(), "\"" + std::string(200, 'x') + "...\" (201 bytes)");
}

TEST(TextWriter, QuotedTextIsNotCutWithinACharacter) {
    Memory<512> memory;
    memory.writer.AppendQuoted((std::string(199, 'x') + "\xE2\x82\xAC").c_str());
    EXPECT_EQ(memory.writer.Text(), "\"" + std::string(199, 'x') + "...\" (202 bytes)");
}

TEST(TextWriter, QuotedMemoryMayLackItsZero) {
    Memory<512> memory;
    const char bytes[] = {'a', 'b', 'c'};
    memory.writer.AppendQuoted(bytes, 2);
    EXPECT_EQ(memory.writer.Text(), "\"ab\"");
    memory.writer.AppendQuoted(std::string(300, 'x').c_str(), 300);
    EXPECT_EQ(memory.writer.Text(), "\"ab\"\"" + std::string(200, 'x') + "...\"");
}

TEST(WithoutCutCharacter, DropsOnlyWhatIsCut) {
    EXPECT_EQ(WithoutCutCharacter(""), "");
    EXPECT_EQ(WithoutCutCharacter("a"), "a");
    EXPECT_EQ(WithoutCutCharacter("a\xC3\xA9"), "a\xC3\xA9");
    EXPECT_EQ(WithoutCutCharacter("a\xC3"), "a");
    EXPECT_EQ(WithoutCutCharacter("a\xE2\x82\xAC"), "a\xE2\x82\xAC");
    EXPECT_EQ(WithoutCutCharacter("a\xE2\x82"), "a");
    EXPECT_EQ(WithoutCutCharacter("a\xF0\x9F\x98\x80"), "a\xF0\x9F\x98\x80");
    EXPECT_EQ(WithoutCutCharacter("a\xF0\x9F\x98"), "a");
    EXPECT_EQ(WithoutCutCharacter("\x80\x80\x80\x80\x80"), "\x80\x80\x80\x80\x80");
}

}  // namespace
