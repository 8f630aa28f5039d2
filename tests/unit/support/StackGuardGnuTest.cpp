// What the plug-in's flags and its guard do when a buffer is overrun: in a small library, in a process of its own.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>

#include "unit/support/CallInLibrary.h"

extern "C" std::uintptr_t __stack_chk_guard;

namespace {

constexpr DWORD kFastFailure = 0xC0000409;  // Windows calls it a stack buffer overrun, whatever its code is

TEST(StackGuard, ValueIsSetAndCannotBeWrittenByAText) {
    EXPECT_NE(__stack_chk_guard, 0U);
    EXPECT_EQ(__stack_chk_guard >> 48, 0U);
}

TEST(StackGuard, ValueIsAnotherOneInEachProcess) {
    EXPECT_NE(ExitCodeOf("guarded", "Guard", 0), ExitCodeOf("guarded", "Guard", 0));
}

TEST(StackGuard, LetsPassWhatFits) {
    EXPECT_EQ(ExitCodeOf("guarded", "Fill", 16), 0U);
    EXPECT_EQ(ExitCodeOf("guarded", "Copy", 16), 0U);
}

TEST(StackGuard, OverrunOfABufferEndsTheProcessBeforeTheFunctionReturns) {
    EXPECT_EQ(ExitCodeOf("guarded", "Fill", 200), kFastFailure);
    // So few that the return address is as it was.
    EXPECT_EQ(ExitCodeOf("guarded", "Fill", 32), kFastFailure);
}

TEST(StackGuard, CheckedCallOfTheCLibraryDoesNotOverrun) { EXPECT_EQ(ExitCodeOf("guarded", "Copy", 17), kFastFailure); }

// The negative test: without the flags, the same library goes wherever the overrun sends it.
TEST(StackGuard, WithoutTheFlagsNothingStopsAnOverrun) {
    EXPECT_EQ(ExitCodeOf("unguarded", "Fill", 200), STATUS_ACCESS_VIOLATION);
    EXPECT_EQ(ExitCodeOf("unguarded", "Copy", 17), 0U);
}

}  // namespace
