// The plug-in's own way to variables of threads, in a small library.
#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <list>
#include <string>

#include "doubles/common/ImportPatch.h"
#include "doubles/common/Thread.h"
#include "unit/support/CallInLibrary.h"

namespace {

class ThreadVariables : public testing::Test {
  protected:
    ThreadVariables() : library(LoadLibraryA(Path().c_str())) {}
    ~ThreadVariables() override { FreeLibrary(library); }

    static std::string Path() { return FolderOfTestProgram() + "libraries\\thread_variables.dll"; }

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

void* NoMemory(std::size_t) { return nullptr; }
void* NoMemoryForMany(std::size_t, std::size_t) { return nullptr; }
void* NoOtherMemory(void*, std::size_t) { return nullptr; }
LPVOID WINAPI NoMemoryOfHeap(HANDLE, DWORD, SIZE_T) { return nullptr; }
BOOL WINAPI NoValueOfThread(DWORD, LPVOID) { return FALSE; }

// The library gets no memory, whatever it asks for.
class WithoutMemory {
  public:
    explicit WithoutMemory(HMODULE library)
        : mMalloc(library, "malloc", AsReplacement(NoMemory)),
          mCalloc(library, "calloc", AsReplacement(NoMemoryForMany)),
          mRealloc(library, "realloc", AsReplacement(NoOtherMemory)),
          mHeapAlloc(library, "HeapAlloc", AsReplacement(NoMemoryOfHeap)) {}

  private:
    ImportPatch mMalloc;
    ImportPatch mCalloc;
    ImportPatch mRealloc;
    ImportPatch mHeapAlloc;
};

TEST_F(ThreadVariables, EveryThreadCanThrowWithoutMemory) {
    const WithoutMemory memory(library);
    EXPECT_EQ(Call<int>("Throw"), 1);
    // One after the other: each gives its room back.
    for (int i = 0; i < 20; ++i) {
        int caught = 0;
        Thread([&] { caught = Call<int>("Throw") + Call<int>("Throw"); }).Join();
        EXPECT_EQ(caught, 2);
    }
}

TEST_F(ThreadVariables, WithoutMemoryTheyStillBelongToOneThread) {
    const WithoutMemory memory(library);
    *Variable("WithValue") = 7;
    for (int i = 0; i < 2; ++i) {
        int value = 0;
        bool same = false;
        Thread([&] {
            value = ++*Variable("WithValue");
            same = *Variable("WithValue") == value;
        }).Join();
        EXPECT_EQ(value, 43);
        EXPECT_TRUE(same);
    }
    EXPECT_EQ(*Variable("WithValue"), 7);
}

TEST_F(ThreadVariables, ThreadWhoseRoomCannotBeRememberedKeepsItAllTheSame) {
    const ImportPatch values(library, "TlsSetValue", AsReplacement(NoValueOfThread));
    int value = 0;
    Thread([&] {
        *Variable("WithValue") = 1;
        value = ++*Variable("WithValue");
    }).Join();
    EXPECT_EQ(value, 2);
}

// --- what threads take and give back --------------------------------------------------------------------------------

struct HeapUse {
    int taken = 0;
    int given = 0;
    DWORD flags = 0;
    LPVOID last = nullptr;       // what was taken last
    LPVOID forgotten = nullptr;  // what was given back last
    LPVOID value = nullptr;      // what the index was set to last
};
HeapUse sUse;

LPVOID WINAPI CountTaken(HANDLE heap, DWORD flags, SIZE_T size) {
    ++sUse.taken;
    sUse.flags |= flags;
    sUse.last = HeapAlloc(heap, flags, size);
    return sUse.last;
}

BOOL WINAPI CountGiven(HANDLE heap, DWORD flags, LPVOID memory) {
    ++sUse.given;
    sUse.flags |= flags;
    sUse.forgotten = memory;
    return HeapFree(heap, flags, memory);
}

BOOL WINAPI NoteValue(DWORD index, LPVOID value) {
    sUse.value = value;
    return TlsSetValue(index, value);
}

TEST_F(ThreadVariables, ThreadTakesOneRoomAndForgetsItWhenItEnds) {
    sUse = {};
    const ImportPatch take(library, "HeapAlloc", AsReplacement(CountTaken));
    const ImportPatch give(library, "HeapFree", AsReplacement(CountGiven));
    const ImportPatch remember(library, "TlsSetValue", AsReplacement(NoteValue));
    bool isRemembered = false;
    Thread([&] {
        Variable("WithValue");
        Variable("Without");
        isRemembered = sUse.value == sUse.last && sUse.last != nullptr;
    }).Join();
    EXPECT_TRUE(isRemembered);
    EXPECT_EQ(sUse.taken, 1);
    EXPECT_EQ(sUse.given, 1);
    EXPECT_EQ(sUse.forgotten, sUse.last);
    EXPECT_EQ(sUse.value, nullptr);
    // The heap is that of the process, which other threads use at the same time.
    EXPECT_EQ(sUse.flags, 0u);
}

TEST_F(ThreadVariables, RoomThatCannotBeRememberedIsGivenBackAtOnce) {
    sUse = {};
    const ImportPatch take(library, "HeapAlloc", AsReplacement(CountTaken));
    const ImportPatch give(library, "HeapFree", AsReplacement(CountGiven));
    const ImportPatch values(library, "TlsSetValue", AsReplacement(NoValueOfThread));
    int given = 0;
    Thread([&] {
        Variable("WithValue");
        given = sUse.given;
    }).Join();
    EXPECT_EQ(sUse.taken, 1);
    EXPECT_EQ(given, 1);
    EXPECT_EQ(sUse.forgotten, sUse.last);
    EXPECT_EQ(sUse.flags, 0u);
}

TEST_F(ThreadVariables, ThreadThatUnloadsTheLibraryGivesItsRoomBackToo) {
    sUse = {};
    ASSERT_TRUE(ReplaceImport(library, "HeapAlloc", AsReplacement(CountTaken)));
    ASSERT_TRUE(ReplaceImport(library, "HeapFree", AsReplacement(CountGiven)));
    Thread([&] {
        Variable("WithValue");
        FreeLibrary(library);
    }).Join();
    EXPECT_EQ(sUse.taken, 1);
    EXPECT_EQ(sUse.given, 1);
    EXPECT_EQ(sUse.forgotten, sUse.last);
    LoadLibraryA(Path().c_str());
}

// --- what ends the process: here only the thread --------------------------------------------------------------------

std::atomic<int> sAborted = 0;

[[noreturn]] void EndThread() {
    ++sAborted;
    ExitThread(0);
}

TEST_F(ThreadVariables, VariableThatThereIsNoRoomForIsSeenAtOnce) {
    for (const char* const variable : {"TooLarge", "OverAligned"}) {
        sAborted = 0;
        const ImportPatch end(library, "abort", AsReplacement(EndThread));
        bool goesOn = false;
        Thread([&] {
            Variable(variable);
            goesOn = true;
        }).Join();
        EXPECT_EQ(sAborted, 1) << variable;
        EXPECT_FALSE(goesOn) << variable;
    }
}

TEST_F(ThreadVariables, WithoutMemoryEightThreadsAtATimeHaveARoomAndNoMore) {
    sAborted = 0;
    const WithoutMemory memory(library);
    const ImportPatch end(library, "abort", AsReplacement(EndThread));
    std::atomic<int> served = 0;
    std::atomic<bool> mayEnd = false;
    std::list<Thread> threads;
    for (int i = 0; i < 9; ++i) {
        threads.emplace_back([&] {
            Variable("WithValue");
            ++served;
            while (!mayEnd) {
                SwitchToThread();
            }
        });
    }
    while (served + sAborted < 9) {
        SwitchToThread();
    }
    EXPECT_EQ(served, 8);
    EXPECT_EQ(sAborted, 1);
    mayEnd = true;
    for (Thread& thread : threads) {
        thread.Join();
    }
}

// These are the first accesses to the library: the threads race for places and rooms.
TEST_F(ThreadVariables, ManyThreadsAtOnceFindTheirOwn) {
    std::atomic<bool> begin = false;
    std::atomic<int> wrong = 0;
    std::list<Thread> threads;
    for (int i = 0; i < 16; ++i) {
        threads.emplace_back([&, i] {
            while (!begin) {
                SwitchToThread();
            }
            int* const mine = Variable("WithValue");
            wrong += *mine != 42 || *Variable("Without") != 0;
            *mine = i;
            *Variable("Without") = -i;
            wrong += Call<int>("Throw") != 1 || *Variable("WithValue") != i || *Variable("Without") != -i;
        });
    }
    begin = true;
    for (Thread& thread : threads) {
        thread.Join();
    }
    EXPECT_EQ(wrong, 0);
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
