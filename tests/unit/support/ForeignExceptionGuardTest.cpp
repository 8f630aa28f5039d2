#include "support/ForeignExceptionGuard.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <stdexcept>
#include <string>

#include "doubles/common/ForeignException.h"

namespace {

constexpr DWORD kVisualCppException = 0xE06D7363;
constexpr DWORD kOtherException = 0xE0000001;

TEST(ForeignExceptionGuard, CallsTheFunctionOnceWithItsContextAndReturns0) {
    int calls = 0;
    EXPECT_EQ(RunStoppingForeignExceptions([](void* context) { ++*static_cast<int*>(context); }, &calls), 0);
    EXPECT_EQ(calls, 1);
}

TEST(ForeignExceptionGuard, StopsAVisualCppExceptionAndReturns1) {
    EXPECT_EQ(RunStoppingForeignExceptions([](void*) { ThrowLikeAnotherCompiler(); }, nullptr), 1);
}

// Answers its depth; the deepest call of 50 throws when it is told to.
int Descend(int depth, bool throws) {
    if (depth == 50) {
        if (throws) {
            ThrowLikeAnotherCompiler();
        }
        return depth;
    }
    const volatile int result = Descend(depth + 1, throws);
    return result;
}

TEST(ForeignExceptionGuard, StopsOneThatComesFromDeepBelow) {
    int result = 7;
    const auto descend = [](void* context) { *static_cast<int*>(context) = Descend(0, true); };
    EXPECT_EQ(RunStoppingForeignExceptions(descend, &result), 1);
    EXPECT_EQ(result, 7);
    EXPECT_EQ(Descend(0, false), 50);
}

TEST(ForeignExceptionGuard, WorksAgainAfterItHasStoppedOne) {
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(RunStoppingForeignExceptions([](void*) { ThrowLikeAnotherCompiler(); }, nullptr), 1);
    }
    EXPECT_EQ(RunStoppingForeignExceptions([](void*) {}, nullptr), 0);
}

TEST(ForeignExceptionGuard, InnerGuardStopsTheExceptionBeforeTheOuterOne) {
    int inner = -1;
    const auto nested = [](void* context) {
        *static_cast<int*>(context) = RunStoppingForeignExceptions([](void*) { ThrowLikeAnotherCompiler(); }, nullptr);
    };
    EXPECT_EQ(RunStoppingForeignExceptions(nested, &inner), 0);
    EXPECT_EQ(inner, 1);
}

TEST(ForeignExceptionGuard, OurOwnExceptionsPassThrough) {
    try {
        RunStoppingForeignExceptions([](void*) { throw std::runtime_error("ours"); }, nullptr);
        FAIL() << "the exception was stopped";
    } catch (const std::runtime_error& error) {
        EXPECT_STREQ(error.what(), "ours");
    }
}

LONG WINAPI EndThread(EXCEPTION_POINTERS* pointers) { ExitThread(pointers->ExceptionRecord->ExceptionCode); }

// Answers the exception that nobody stopped, or what the guard answered.
DWORD WINAPI RaiseInGuard(void* code) {
    const auto raise = [](void* context) {
        RaiseException(*static_cast<DWORD*>(context), EXCEPTION_NONCONTINUABLE, 0, nullptr);
    };
    return static_cast<DWORD>(RunStoppingForeignExceptions(raise, code));
}

DWORD OutcomeOf(DWORD code) {
    const LPTOP_LEVEL_EXCEPTION_FILTER before = SetUnhandledExceptionFilter(EndThread);
    const HANDLE thread = CreateThread(nullptr, 0, RaiseInGuard, &code, 0, nullptr);
    WaitForSingleObject(thread, INFINITE);
    DWORD outcome = 0;
    GetExitCodeThread(thread, &outcome);
    CloseHandle(thread);
    SetUnhandledExceptionFilter(before);
    return outcome;
}

TEST(ForeignExceptionGuard, ExceptionsOfWindowsPassThrough) {
    EXPECT_EQ(OutcomeOf(kVisualCppException), 1u);
    EXPECT_EQ(OutcomeOf(kOtherException), kOtherException);
    EXPECT_EQ(OutcomeOf(0xC0000005), 0xC0000005);  // a crash must stay a crash
    EXPECT_EQ(OutcomeOf(kVisualCppException + 1), kVisualCppException + 1);
}

TEST(CallForeignCodeTest, ReturnsTheResult) {
    EXPECT_EQ(CallForeignCode([] { return 12; }), 12);
    EXPECT_EQ(CallForeignCode([] { return std::string(100, 'x'); }), std::string(100, 'x'));
}

TEST(CallForeignCodeTest, CallMayHaveNoResult) {
    int calls = 0;
    CallForeignCode([&] { ++calls; });
    EXPECT_EQ(calls, 1);
    EXPECT_THROW(CallForeignCode([] { ThrowLikeAnotherCompiler(); }), ForeignException);
}

TEST(CallForeignCodeTest, ForeignExceptionBecomesOneThatUnwindsOurFrames) {
    struct Frame {
        bool& unwound;
        ~Frame() { unwound = true; }
    };
    bool unwound = false;
    try {
        const Frame frame{unwound};
        CallForeignCode([] {
            ThrowLikeAnotherCompiler();
            return 0;
        });
        FAIL() << "nothing was thrown";
    } catch (const ForeignException& exception) {
        EXPECT_STREQ(exception.what(), "code of another compiler threw an exception");
    }
    EXPECT_TRUE(unwound);
}

TEST(CallForeignCodeTest, OurOwnExceptionStaysWhatItIs) {
    EXPECT_THROW(CallForeignCode([]() -> int { throw 12; }), int);
}

}  // namespace
