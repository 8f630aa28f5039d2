// Negative tests: a counter that counts nothing would let every test of memory pass.
// Blocks come from direct calls: the compiler may leave out an allocation by a new expression that nobody needs.
#include "doubles/common/AllocationFaults.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "doubles/common/OwnMemory.h"
#include "doubles/common/Thread.h"

namespace {

void AllocateAndDelete() { ::operator delete(::operator new(24)); }

bool CanAllocate() {
    void* volatile block = std::malloc(16);
    const bool could = block != nullptr;
    std::free(block);
    return could;
}

TEST(AllocationFaults, BlockThatIsNotDeletedIsLive) {
    const std::ptrdiff_t before = LiveAllocations();
    void* const leaked = ::operator new(24);
    const std::ptrdiff_t during = LiveAllocations();
    ::operator delete(leaked);
    const std::ptrdiff_t after = LiveAllocations();
    EXPECT_EQ(during, before + 1);
    EXPECT_EQ(after, before);
}

TEST(AllocationFaults, BlocksOfContainersAreCounted) {
    const std::size_t before = AllocationsMade();
    const std::vector<std::wstring> texts(2, std::wstring(100, L'x'));
    const std::size_t after = AllocationsMade();
    EXPECT_EQ(after - before, 4u);  // the vector, the text and its two copies
    EXPECT_EQ(texts[1].size(), 100u);
}

TEST(AllocationFaults, ExactlyTheNthAllocationFails) {
    const FailingAllocation memory(2);
    EXPECT_FALSE(memory.HasHappened());
    const bool first = CanAllocate();
    const bool hadHappened = memory.HasHappened();
    const bool second = CanAllocate();
    const bool third = CanAllocate();
    EXPECT_TRUE(first);
    EXPECT_FALSE(hadHappened);
    EXPECT_FALSE(second);
    EXPECT_TRUE(third);
    EXPECT_TRUE(memory.HasHappened());
}

TEST(AllocationFaults, OperatorNewThrows) {
    const FailingAllocation memory;
    bool threw = false;
    try {
        AllocateAndDelete();
    } catch (const std::bad_alloc&) {
        threw = true;
    }
    EXPECT_TRUE(threw);
    EXPECT_NO_THROW(AllocateAndDelete());
}

TEST(AllocationFaults, NothingFailsAnyMoreOnceItIsOver) {
    { const FailingAllocation memory; }
    EXPECT_NO_THROW(AllocateAndDelete());
}

TEST(AllocationFaults, OwnMemoryIsNeitherCountedNorFailed) {
    const std::size_t before = AllocationsMade();
    const FailingAllocation memory;
    bool own = false;
    bool notOwn = true;
    {
        const OwnMemory mark;
        own = CanAllocate();
        const NotOwnMemory unmarked;
        notOwn = CanAllocate();
    }
    const std::size_t made = AllocationsMade() - before;
    EXPECT_TRUE(own);
    EXPECT_FALSE(notOwn);
    EXPECT_EQ(made, 0u);
}

TEST(AllocationFaults, OtherThreadsAreNeitherCountedNorFailed) {
    LiveAllocations();
    bool could = false;
    std::size_t made = 0;
    Thread other([&] {
        const std::size_t before = AllocationsMade();
        const FailingAllocation memory;
        could = CanAllocate();
        made = AllocationsMade() - before;
    });
    other.Join();
    EXPECT_TRUE(could);
    EXPECT_EQ(made, 0u);
}

}  // namespace
