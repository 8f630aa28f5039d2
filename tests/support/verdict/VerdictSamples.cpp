// One case per way in which a test program can end. verdict_test.py runs each alone and asserts how it is judged.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

namespace {

TEST(Sample, Passes) { std::puts("said\nby the test"); }

TEST(Sample, Fails) { FAIL() << "on purpose"; }

TEST(Sample, IsSkipped) { GTEST_SKIP() << "on purpose"; }

TEST(Sample, EndsEarlyWithCodeZero) { std::_Exit(0); }

TEST(Sample, EndsWithACodeThatIsCutToZero) { std::_Exit(256); }

TEST(Sample, ReadsThroughANullPointer) {
    const volatile int* nowhere = nullptr;
    EXPECT_EQ(*nowhere, 0);
}

TEST(Sample, Aborts) { std::abort(); }

void Throw() { throw std::runtime_error("on purpose"); }

void ThrowFromANoexceptFunction() noexcept { Throw(); }

TEST(Sample, Terminates) { ThrowFromANoexceptFunction(); }

// More levels than any stack has room for.
int Recurse(int levels) {
    volatile char frame[4096];
    frame[0] = static_cast<char>(levels);
    return levels == 0 ? frame[0] : Recurse(levels - 1) + frame[0];
}

TEST(Sample, OverflowsTheStack) { EXPECT_EQ(Recurse(1'000'000), 0); }

TEST(Sample, Hangs) { Sleep(INFINITE); }

TEST(Sample, LeavesAProcessBehind) {
    char path[MAX_PATH];
    ASSERT_NE(GetModuleFileNameA(nullptr, path, MAX_PATH), 0U);
    std::string commandLine = std::string("\"") + path + "\" --gtest_filter=Sample.SleepsForAWhile";
    STARTUPINFOA start = {};
    start.cb = sizeof(start);
    PROCESS_INFORMATION process = {};
    ASSERT_TRUE(
        CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process));
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
}

TEST(Sample, SleepsForAWhile) { Sleep(8000); }

TEST(Sample, SleepsForAMoment1) { Sleep(1500); }
TEST(Sample, SleepsForAMoment2) { Sleep(1500); }
TEST(Sample, SleepsForAMoment3) { Sleep(1500); }

}  // namespace
