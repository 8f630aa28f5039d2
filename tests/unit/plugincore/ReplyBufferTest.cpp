#include "plugincore/ReplyBuffer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

TEST(ReplyBuffer, IsZeroedAndTellsItsCapacity) {
    ReplyBuffer<16> buffer;
    EXPECT_EQ(*buffer.Size(), 16u);
    EXPECT_EQ(std::string(buffer.Data(), 16), std::string(16, '\0'));
    EXPECT_EQ(buffer.Text(), "");
}

TEST(ReplyBuffer, TextEndsAtTheFirstZero) {
    ReplyBuffer<16> buffer;
    std::memcpy(buffer.Data(), "abc\0def", 7);
    EXPECT_EQ(buffer.Text(), "abc");
}

TEST(ReplyBuffer, TextEndsEvenWhenTheReplyFillsTheBuffer) {
    ReplyBuffer<16> buffer;
    std::memset(buffer.Data(), 'x', *buffer.Size());
    EXPECT_EQ(buffer.Text(), std::string(16, 'x'));
}

TEST(ReplyBuffer, TextDoesNotDependOnTheSizeThatComesBack) {
    ReplyBuffer<16> buffer;
    std::memcpy(buffer.Data(), "abc", 3);
    *buffer.Size() = 0xFFFFFFFFFFFFFFFF;
    EXPECT_EQ(buffer.Text(), "abc");
    *buffer.Size() = 0;
    EXPECT_EQ(buffer.Text(), "abc");
}

TEST(ReplyBuffer, AssignedTextIsCutToTheCapacity) {
    ReplyBuffer<4> buffer;
    buffer.Assign("ab");
    EXPECT_EQ(buffer.Text(), "ab");
    buffer.Assign("abcd");
    EXPECT_EQ(buffer.Text(), "abcd");
    buffer.Assign("vwxyz");
    EXPECT_EQ(buffer.Text(), "vwxy");
    EXPECT_EQ(*buffer.Size(), 4u);
}

TEST(ReplyBuffer, SizesAreThoseOfTheContract) {
    EXPECT_EQ(kOpenReplySize, 32767u);
    EXPECT_EQ(kSettingsSize, 8192u);
    EXPECT_EQ(kNewDocumentReplySize, 256u);
    EXPECT_EQ(kCommandDialogReplySize, 256u);
}

}  // namespace
