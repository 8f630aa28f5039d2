#include "simhost/scenario/JsonText.h"

#include <gtest/gtest.h>

namespace {

using simhost::JsonText;
using simhost::Position;
using simhost::ReadJsonText;

void ExpectMistake(std::string_view text, Position position, const std::string& words) {
    const JsonText read = ReadJsonText(text);
    EXPECT_FALSE(read.readable) << text;
    ASSERT_EQ(read.mistakes.size(), 1U) << text;
    EXPECT_EQ(read.mistakes.front().position, position) << text;
    EXPECT_EQ(read.mistakes.front().words, words) << text;
}

TEST(JsonText, MembersHaveThePlacesOfTheirNamesAndValues) {
    const JsonText text = ReadJsonText("{\n  \"a\": [1, {\"b/c\": true}],\n  \"\xC3\xA4\": null, \"d\": -1.5e3\n}");
    ASSERT_TRUE(text.readable);
    EXPECT_TRUE(text.mistakes.empty());
    EXPECT_EQ(text.positions.OfKey("/a"), (Position{2, 3}));
    EXPECT_EQ(text.positions.OfValue("/a"), (Position{2, 8}));
    EXPECT_EQ(text.positions.OfValue("/a/0"), (Position{2, 9}));
    EXPECT_EQ(text.positions.OfValue("/a/1"), (Position{2, 12}));
    EXPECT_EQ(text.positions.OfKey("/a/1/b~1c"), (Position{2, 13}));
    EXPECT_EQ(text.positions.OfValue("/a/1/b~1c"), (Position{2, 20}));
    EXPECT_EQ(text.positions.OfValue("/\xC3\xA4"), (Position{3, 8}));
    // Columns count characters, not bytes.
    EXPECT_EQ(text.positions.OfKey("/d"), (Position{3, 14}));
    EXPECT_EQ(text.positions.OfValue("/d"), (Position{3, 19}));
}

TEST(JsonText, AMemberThatIsNotThereHasThePlaceOfWhatIsAroundIt) {
    const JsonText text = ReadJsonText("{\"a\": [1]}");
    EXPECT_EQ(text.positions.OfValue("/a/7/x"), (Position{1, 7}));
    EXPECT_EQ(text.positions.OfValue("/x"), (Position{1, 1}));
}

TEST(JsonText, TextsWithEscapesDoNotShiftWhatFollows) {
    const JsonText text = ReadJsonText(R"({"a\"": "\\\"\u00e4", "b": [[], {}, ""]})");
    ASSERT_TRUE(text.readable);
    EXPECT_EQ(text.positions.OfKey("/b"), (Position{1, 23}));
    EXPECT_EQ(text.positions.OfValue("/b/2"), (Position{1, 37}));
    EXPECT_EQ(text.value.dump(), nlohmann::ordered_json::parse(R"({"a\"": "\\\"\u00e4", "b": [[], {}, ""]})").dump());
}

TEST(JsonText, ANameThatStandsThereTwiceIsAMistakeButReadable) {
    const JsonText text = ReadJsonText(R"({"a": {"b": 1, "b": 2}})");
    EXPECT_TRUE(text.readable);
    ASSERT_EQ(text.mistakes.size(), 1U);
    EXPECT_EQ(text.mistakes.front().position, (Position{1, 16}));
    EXPECT_EQ(text.mistakes.front().member, "a");
}

TEST(JsonText, WhatIsNoJsonIsToldInPlainWords) {
    ExpectMistake("", {1, 1}, "the file is empty");
    ExpectMistake(" \n", {1, 1}, "the file is empty");
    ExpectMistake("{\"a\": 1,}", {1, 9}, "there is a comma too many before }");
    ExpectMistake("[1 2]", {1, 4}, "a comma is missing before 2, or something is closed too early");
    ExpectMistake("[1,,2]", {1, 4}, "unexpected ,");
    ExpectMistake("[\n[1]", {1, 1}, "the [ is not closed before the file ends");
    ExpectMistake("[tru]", {1, 2}, "unexpected tru");
    ExpectMistake("[1] [", {1, 5}, "a comma is missing before [, or something is closed too early");
    ExpectMistake("// x\n[]", {1, 1}, "JSON has no comments");
    ExpectMistake("[\"a\nb\"]", {1, 2}, "the text is not closed on its line; in a text a line end is written \\n");
    ExpectMistake("[\"\\x\"]", {1, 2}, "the text holds a \\ that stands for nothing; \\\\ is one backslash");
    ExpectMistake("[1e999]", {1, 2}, "the number is too large");
    ExpectMistake("[\"\xFC\"]", {1, 3}, "this is not UTF-8; save the file as UTF-8");
}

TEST(JsonText, DepthIsLimited) {
    EXPECT_TRUE(ReadJsonText(std::string(100, '[') + std::string(100, ']')).readable);
    ExpectMistake(std::string(101, '['), {1, 101}, "more than 100 levels of arrays and objects");
}

TEST(JsonText, AByteOrderMarkOfUtf8IsHarmless) {
    const JsonText text = ReadJsonText("\xEF\xBB\xBF{\"a\": 1}");
    EXPECT_TRUE(text.readable);
    EXPECT_EQ(text.positions.OfKey("/a"), (Position{1, 2}));
}

}  // namespace
