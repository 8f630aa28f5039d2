// While it lives, the memory that is asked for is wanted by the tests themselves, and not by what they test: recorders
// and fakes say so, and whoever makes memory run out spares them.
#pragma once

#include <atomic>

class TestsOwnMemory {
  public:
    TestsOwnMemory() { ++sDepth; }
    TestsOwnMemory(const TestsOwnMemory&) = delete;
    TestsOwnMemory& operator=(const TestsOwnMemory&) = delete;
    ~TestsOwnMemory() { --sDepth; }

    static bool IsWanted() { return sDepth > 0; }

  private:
    // Of all threads together: what a thread has of its own takes memory when it is first used.
    static inline std::atomic<int> sDepth = 0;
};

// The same function, whose memory is the tests' own: for the tables of the fakes.
template <auto Function>
struct WithOwnMemory;
template <class Result, class... Arguments, Result (*Function)(Arguments...)>
struct WithOwnMemory<Function> {
    static Result Call(Arguments... arguments) {
        const TestsOwnMemory own;
        return Function(arguments...);
    }
};
template <auto Function>
inline constexpr auto kWithOwnMemory = &WithOwnMemory<Function>::Call;
