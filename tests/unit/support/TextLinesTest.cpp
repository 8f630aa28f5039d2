#include "support/TextLines.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace {

using Lines = std::vector<std::string>;

Lines LinesOf(std::string_view text) {
    Lines lines;
    for (std::string_view line; TakeLine(text, line);) {
        lines.emplace_back(line);
    }
    return lines;
}

TEST(TextLines, EachLineComesWithoutItsLineFeed) {
    EXPECT_EQ(LinesOf("one\ntwo\n"), (Lines{"one", "two"}));
    EXPECT_EQ(LinesOf("\r\n\n a \r"), (Lines{"\r", "", " a \r"}));
    EXPECT_EQ(LinesOf(std::string_view("a\0b\nc", 5)), (Lines{std::string("a\0b", 3), "c"}));
}

TEST(TextLines, LastLineNeedsNoLineFeedAndThereIsNoneBehindOne) {
    EXPECT_EQ(LinesOf("one\ntwo"), (Lines{"one", "two"}));
    EXPECT_EQ(LinesOf("one"), Lines{"one"});
    EXPECT_EQ(LinesOf("\n"), Lines{""});
    EXPECT_EQ(LinesOf(""), Lines{});
}

// Every text of up to five characters that are a line feed or not.
TEST(TextLines, AreThoseOfTheStandardLibrary) {
    for (unsigned length = 0; length <= 5; ++length) {
        for (unsigned bits = 0; bits < 1U << length; ++bits) {
            std::string text;
            for (unsigned i = 0; i < length; ++i) {
                text += (bits >> i & 1U) != 0 ? '\n' : static_cast<char>('a' + i);
            }
            Lines expected;
            std::istringstream stream(text);
            for (std::string line; std::getline(stream, line);) {
                expected.push_back(line);
            }
            EXPECT_EQ(LinesOf(text), expected) << text;
        }
    }
}

}  // namespace
