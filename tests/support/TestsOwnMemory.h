// Marks the allocations of recorders and fakes, which fault injection of allocations passes over.
#pragma once

#include "doubles/common/OwnMemory.h"

class TestsOwnMemory : public OwnMemory {
  public:
    static bool IsWanted() { return IsMarked(); }
};

// The same function with its allocations marked: for the tables of the fakes.
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
