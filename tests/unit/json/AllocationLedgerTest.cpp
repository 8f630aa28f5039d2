// Canaries: a ledger that counts nothing would let every test of memory pass.
// Blocks come from a direct call: an allocation by a new expression the compiler may leave out when nobody needs it.
#include "unit/json/AllocationLedger.h"

#include <gtest/gtest.h>

#include <new>
#include <string>
#include <vector>

namespace {

void AllocateAndDelete() { ::operator delete(::operator new(24)); }

TEST(AllocationLedgerTest, SeesABlockThatIsNotDeleted) {
    const std::ptrdiff_t before = LiveAllocations();
    void* const leaked = ::operator new(24);
    const std::ptrdiff_t during = LiveAllocations();
    ::operator delete(leaked);
    EXPECT_EQ(during, before + 1);
    EXPECT_EQ(LiveAllocations(), before);
}

TEST(AllocationLedgerTest, SeesTheBlocksOfContainers) {
    const std::size_t before = AllocationsMade();
    const std::vector<std::wstring> texts(2, std::wstring(100, L'x'));
    EXPECT_EQ(AllocationsMade() - before, 4u);  // the vector, the text and its two copies
    EXPECT_EQ(texts[1].size(), 100u);
}

TEST(AllocationLedgerTest, LetsExactlyTheChosenAllocationFail) {
    const FailingAllocation second(2);
    AllocateAndDelete();
    EXPECT_FALSE(second.HasHappened());
    EXPECT_THROW(AllocateAndDelete(), std::bad_alloc);
    EXPECT_TRUE(second.HasHappened());
    EXPECT_NO_THROW(AllocateAndDelete());
}

TEST(AllocationLedgerTest, LetsNothingFailAnyMoreOnceItIsOver) {
    { const FailingAllocation next(1); }
    EXPECT_NO_THROW(AllocateAndDelete());
}

}  // namespace
