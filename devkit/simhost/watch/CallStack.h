// Where a thread of the watched process is: addresses, from the innermost frame outwards, and what lies there.
// Thread: the one that handles the process's debug events.
#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

#include "simhost/watch/Modules.h"
#include "simhost/watch/Symbols.h"

namespace simhost {

using CallStack = std::vector<std::uint64_t>;

struct Frame {
    std::uint64_t address = 0;
    const Module* module = nullptr;  // null: outside all
    Symbol symbol;
};

class StackReader {
  public:
    StackReader(HANDLE process, const Modules& modules) : mProcess(process), mModules(modules) {}

    // The thread must stand still: it is stopped at a debug event, or suspended.
    CallStack ReadFrom(HANDLE thread) const;
    // Suspends the thread meanwhile, and a few times more when its whole stack cannot be read.
    CallStack ReadRunning(HANDLE thread) const;
    // Whether it has been read to the place where threads begin.
    bool IsWhole(const CallStack& stack) const;

    // Frame by frame, with names where somebody may ask for them.
    std::vector<Frame> Describe(const CallStack& stack) const;

  private:
    bool IsOfInterest(const CallStack& stack, std::size_t i) const;
    bool FindFirstKnownFrame(CONTEXT& context, CallStack& stack) const;

    HANDLE mProcess;
    const Modules& mModules;
};

}  // namespace simhost
