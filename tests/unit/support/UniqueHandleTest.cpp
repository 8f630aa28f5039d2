#include "support/UniqueHandle.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

namespace {

std::vector<int> sClosed;

// -1 means "none", as with files: 0 is a handle like any other.
struct NumberTraits {
    using Handle = int;
    static int None() noexcept { return -1; }
    static void Close(int handle) noexcept { sClosed.push_back(handle); }
};
using NumberHandle = UniqueHandle<NumberTraits>;

static_assert(!std::is_copy_constructible_v<NumberHandle> && !std::is_copy_assignable_v<NumberHandle>);
static_assert(std::is_nothrow_move_constructible_v<NumberHandle> && std::is_nothrow_move_assignable_v<NumberHandle>);
static_assert(!std::is_convertible_v<int, NumberHandle>);

class UniqueHandleTest : public testing::Test {
  protected:
    UniqueHandleTest() { sClosed.clear(); }
};

TEST_F(UniqueHandleTest, OwnsNothingByDefault) {
    {
        const NumberHandle handle;
        EXPECT_FALSE(handle);
        EXPECT_EQ(handle.Get(), -1);
    }
    EXPECT_TRUE(sClosed.empty());
}

TEST_F(UniqueHandleTest, TheValueThatMeansNoneIsNotClosed) {
    { EXPECT_FALSE(NumberHandle(-1)); }
    EXPECT_TRUE(sClosed.empty());
}

TEST_F(UniqueHandleTest, ClosesItsHandleOnceAtTheEndOfTheScope) {
    {
        const NumberHandle handle(0);
        EXPECT_TRUE(handle);
        EXPECT_EQ(handle.Get(), 0);
        EXPECT_TRUE(sClosed.empty());
    }
    EXPECT_EQ(sClosed, std::vector{0});
}

TEST_F(UniqueHandleTest, ReleasedHandleIsNotClosed) {
    {
        NumberHandle handle(5);
        EXPECT_EQ(handle.Release(), 5);
        EXPECT_FALSE(handle);
        EXPECT_EQ(handle.Release(), -1);
    }
    EXPECT_TRUE(sClosed.empty());
}

TEST_F(UniqueHandleTest, MoveHandsTheHandleOver) {
    {
        NumberHandle first(5);
        const NumberHandle second(std::move(first));
        EXPECT_EQ(second.Get(), 5);
        EXPECT_EQ(first.Get(), -1);  // promised
    }
    EXPECT_EQ(sClosed, std::vector{5});
}

TEST_F(UniqueHandleTest, AssignmentClosesTheOldHandleFirst) {
    {
        NumberHandle first(1);
        NumberHandle second(2);
        first = std::move(second);
        EXPECT_EQ(sClosed, std::vector{1});
        EXPECT_EQ(first.Get(), 2);
    }
    EXPECT_EQ(sClosed, (std::vector{1, 2}));
}

TEST_F(UniqueHandleTest, AssignmentToItselfKeepsTheHandle) {
    {
        NumberHandle handle(3);
        NumberHandle& same = handle;
        handle = std::move(same);
        EXPECT_EQ(handle.Get(), 3);
        EXPECT_TRUE(sClosed.empty());
    }
    EXPECT_EQ(sClosed, std::vector{3});
}

}  // namespace
