// The plug-in's own way to variables of threads, in a small library.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "doubles/common/Thread.h"

namespace {

class ThreadVariables : public testing::Test {
  protected:
    ThreadVariables() : library(LoadLibraryA(Path().c_str())) {}
    ~ThreadVariables() override { FreeLibrary(library); }

    // Beside the test program.
    static std::string Path() {
        char self[MAX_PATH] = "";
        GetModuleFileNameA(nullptr, self, MAX_PATH);
        const std::string program(self);
        return program.substr(0, program.rfind('\\')) + "\\libraries\\thread_variables.dll";
    }

    template <class Result>
    Result Call(const char* function) const {
        return reinterpret_cast<Result (*)()>(reinterpret_cast<void*>(GetProcAddress(library, function)))();
    }
    int* Variable(const char* function) const { return Call<int*>(function); }

    const HMODULE library;
};

TEST_F(ThreadVariables, BeginWithTheirValuesAndKeepWhatIsWritten) {
    EXPECT_EQ(*Variable("WithValue"), 42);
    EXPECT_EQ(*Variable("Without"), 0);
    *Variable("WithValue") = 7;
    *Variable("Without") = 8;
    EXPECT_EQ(*Variable("WithValue"), 7);
    EXPECT_EQ(*Variable("Without"), 8);
}

TEST_F(ThreadVariables, BelongToOneThread) {
    *Variable("WithValue") = 7;
    int* other = nullptr;
    int value = 0;
    Thread([&] {
        other = Variable("WithValue");
        value = (*other)++;
    }).Join();
    EXPECT_NE(other, Variable("WithValue"));
    EXPECT_EQ(value, 42);
    EXPECT_EQ(*Variable("WithValue"), 7);
}

TEST_F(ThreadVariables, ThreadsThatComeLaterBeginAgain) {
    for (int i = 0; i < 3; ++i) {
        int value = 0;
        Thread([&] { value = ++*Variable("WithValue"); }).Join();
        EXPECT_EQ(value, 43);
    }
}

TEST_F(ThreadVariables, ReadingThemLeavesTheLastErrorAlone) {
    SetLastError(1234);
    Variable("WithValue");
    EXPECT_EQ(GetLastError(), 1234u);
}

TEST_F(ThreadVariables, EveryThreadCanThrow) {
    EXPECT_EQ(Call<int>("Throw"), 1);
    int caught = 0;
    Thread([&] { caught = Call<int>("Throw"); }).Join();
    EXPECT_EQ(caught, 1);
}

// Windows has 1088 indices for a process: a library that kept one could not have one each time.
TEST_F(ThreadVariables, IndexIsGivenBackWhenTheLibraryGoes) {
    FreeLibrary(library);
    const auto nextIndex = [] {
        const DWORD index = TlsAlloc();
        TlsFree(index);
        return index;
    };
    const DWORD before = nextIndex();
    for (int i = 0; i < 5; ++i) {
        const HMODULE again = LoadLibraryA(Path().c_str());
        ASSERT_NE(again, nullptr);
        EXPECT_NE(nextIndex(), before);
        FreeLibrary(again);
    }
    EXPECT_EQ(nextIndex(), before);
    LoadLibraryA(Path().c_str());
}

}  // namespace
