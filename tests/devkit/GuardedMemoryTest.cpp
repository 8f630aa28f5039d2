// Memory that a library is lent: every touch that is not allowed is noted, and the toucher goes on.
#include "simhost/contract/GuardedMemory.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>

namespace {

using simhost::contract::Access;
using simhost::contract::GuardedMemory;
using simhost::contract::Hit;

volatile char* LendText(const std::string& text, Access access) {
    return static_cast<volatile char*>(
        GuardedMemory::Lend(text.c_str(), text.size() + 1, {"Entry", 1, "text", access}));
}

void Release(volatile char* lent, void* out = nullptr) { GuardedMemory::Release(const_cast<char*>(lent), out); }

std::string Describe(const Hit& hit) {
    constexpr const char* kKinds[] = {"behind", "in front", "written", "after return", "freed"};
    return std::string(kKinds[static_cast<int>(hit.kind)]) + (hit.isWrite ? " write " : " read ") +
           std::to_string(hit.offset) + " of " + std::to_string(hit.size);
}

std::vector<std::string> Noted() {
    std::vector<std::string> texts;
    for (const Hit& hit : GuardedMemory::TakeHits()) {
        texts.push_back(Describe(hit));
    }
    return texts;
}

using Texts = std::vector<std::string>;

TEST(GuardedMemory, WhatIsAllowedIsNotNoted) {
    volatile char* const text = LendText("abc", Access::kReadWrite);
    EXPECT_EQ(text[0], 'a');
    text[2] = 'C';
    std::array<char, 4> back{};
    Release(text, back.data());
    EXPECT_STREQ(back.data(), "abC");
    EXPECT_EQ(Noted(), Texts{});
}

TEST(GuardedMemory, EachZoneIsNotedOnceWithTheFirstByteAndTheToucherGoesOn) {
    volatile char* const text = LendText("abc", Access::kReadWrite);
    text[4] = 'x';
    text[5] = 'y';
    EXPECT_EQ(text[4], 'x');
    text[-5000] = 'z';
    EXPECT_EQ(Noted(), (Texts{"behind write 4 of 4", "in front write -5000 of 4"}));
    Release(text);
    EXPECT_EQ(Noted(), Texts{});
}

TEST(GuardedMemory, BytesInFrontOnTheSamePageAreNoticedAtTheEnd) {
    volatile char* const text = LendText("abc", Access::kReadWrite);
    text[-1] = 'x';
    text[-100] = 'x';
    EXPECT_EQ(Noted(), Texts{});
    Release(text);
    EXPECT_EQ(Noted(), Texts{"in front write -1 of 4"});
}

TEST(GuardedMemory, OfNothingEveryByteIsBehind) {
    auto* const nothing =
        static_cast<volatile char*>(GuardedMemory::Lend(nullptr, 0, {"Entry", 1, "buffer", Access::kReadWrite}));
    nothing[0] = 'x';
    EXPECT_EQ(Noted(), Texts{"behind write 0 of 0"});
    Release(nothing);
}

TEST(GuardedMemory, AWriteToWhatMayOnlyBeReadIsNoted) {
    volatile char* const text = LendText("abc", Access::kReadOnly);
    EXPECT_EQ(text[1], 'b');
    text[1] = 'B';
    EXPECT_EQ(text[1], 'B');
    EXPECT_EQ(Noted(), Texts{"written write 1 of 4"});
    Release(text);
}

TEST(GuardedMemory, UseAfterReleaseIsNotedAndFindsTheContents) {
    volatile char* const text = LendText("abc", Access::kReadOnly);
    Release(text);
    EXPECT_EQ(text[2], 'c');
    EXPECT_EQ(Noted(), Texts{"after return read 2 of 4"});
}

TEST(GuardedMemory, OldBlocksMakeRoomForNewOnes) {
    for (int i = 0; i < 5000; ++i) {
        volatile char* const text = LendText("abc", Access::kReadWrite);
        ASSERT_EQ(text[3], '\0');
        Release(text);
    }
    EXPECT_EQ(Noted(), Texts{});
}

TEST(GuardedMemory, FreeingIsNotedForABlockAlone) {
    volatile char* const text = LendText("abc", Access::kReadOnly);
    int ofOurs = 0;
    EXPECT_FALSE(GuardedMemory::NoteFreed(&ofOurs, nullptr));
    EXPECT_TRUE(GuardedMemory::NoteFreed(const_cast<char*>(text), nullptr));
    EXPECT_EQ(Noted(), Texts{"freed read 0 of 4"});
    Release(text);
}

}  // namespace
