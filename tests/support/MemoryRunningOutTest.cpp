#include "support/fakes/MemoryRunningOut.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace {

// Whether a block could be had.
bool CanAllocate() {
    void* volatile block = std::malloc(16);
    const bool could = block != nullptr;
    std::free(block);
    return could;
}

TEST(MemoryRunningOutTest, NthBlockCannotBeHadAndTheOthersCan) {
    const MemoryRunningOut memory(2);
    EXPECT_FALSE(MemoryRunningOut::HasRunOut());
    const bool first = CanAllocate();
    const bool second = CanAllocate();
    const bool third = CanAllocate();
    EXPECT_TRUE(first);
    EXPECT_FALSE(second);
    EXPECT_TRUE(third);
    EXPECT_TRUE(MemoryRunningOut::HasRunOut());
}

int AllocateForTheTests(int answer) { return CanAllocate() ? answer : 0; }

TEST(MemoryRunningOutTest, TestsOwnBlocksDoNotCount) {
    const MemoryRunningOut memory(1);
    bool own = false;
    {
        const TestsOwnMemory wanted;
        own = CanAllocate();
    }
    const int wrapped = kWithOwnMemory<AllocateForTheTests>(7);
    const bool other = CanAllocate();
    EXPECT_TRUE(own);
    EXPECT_EQ(wrapped, 7);
    EXPECT_FALSE(other);
}

}  // namespace
